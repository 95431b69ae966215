// fetched_content.h - reads the files that a server with the whole sample archive puts into its blob directory.
#ifndef OXAQRYCLN_TESTS_TOOLS_DEVSERVER_FETCHED_CONTENT_H_
#define OXAQRYCLN_TESTS_TOOLS_DEVSERVER_FETCHED_CONTENT_H_

#include <gtest/gtest.h>
#include <tiffio.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "tests/tools/devserver/wire_client.h"

namespace oxaqrycln::devserver {

inline std::string Content(const std::filesystem::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

class ContentTest : public ::testing::Test {
 protected:
  // The file that a request has put into the blob directory; checks its announced length.
  std::filesystem::path Fetch(const std::string& command) const {
    std::istringstream answer(server_.Ask(command));
    std::string status;
    std::string length;
    std::string name;
    std::getline(answer, status);
    std::getline(answer, length);
    std::getline(answer, name, '\r');
    EXPECT_EQ(status, "Status: OK\r") << command;
    std::filesystem::path file = server_.BlobPath(name);
    EXPECT_EQ(std::to_string(Content(file).size()) + "\r", length) << command;
    return file;
  }

  RunningServer server_{{}, "none", kSampleDocumentCount};
};

// Width and compression of each page (g: fax group 4, c: other), as libtiff reads them.
inline std::string DescribeTiff(const std::filesystem::path& file) {
  std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(file.c_str(), "r"), TIFFClose);
  if (tiff == nullptr) return "no TIFF file";
  std::string pages;
  do {
    std::uint32_t width = 0;
    std::uint16_t compression = 0;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff.get(), TIFFTAG_COMPRESSION, &compression);
    pages += std::to_string(width) + (compression == COMPRESSION_CCITTFAX4 ? "g " : "c ");
  } while (TIFFReadDirectory(tiff.get()) == 1);
  return pages;
}

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TESTS_TOOLS_DEVSERVER_FETCHED_CONTENT_H_
