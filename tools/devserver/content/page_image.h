// page_image.h - page images: those of the sample archive, which are drawn here, and those of TIFF files.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PAGE_IMAGE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PAGE_IMAGE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/devserver/content/descriptor.h"

struct tiff;

namespace oxaqrycln::devserver {

// The most pages of one TIFF file.
inline constexpr std::int64_t kMostPages = 1000;

// Rows from top to bottom. Black and white: one bit per pixel, 1 is black, highest bit first; colour: red, green, blue.
struct PageImage {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool inColour = false;
  std::vector<std::uint8_t> bytes;

  std::size_t RowByteCount() const noexcept { return inColour ? std::size_t{width} * 3 : (std::size_t{width} + 7) / 8; }
};

// The page of a scanned sample document: a frame, the numbers of document and page, and bars instead of lines of text.
// The same in every run.
PageImage DrawSamplePage(std::int64_t documentId, std::int64_t page);
// A TIFF file with that page only.
std::string SamplePageTiff(std::int64_t documentId, std::int64_t page);

// Writes a TIFF file in memory. Every function raises ServerError.
class TiffWriter {
 public:
  TiffWriter();
  void Add(const PageImage& page);
  // The bytes of the file, to which nothing can be added any more.
  std::string Finish();

 private:
  Descriptor file_;
  std::unique_ptr<tiff, void (*)(tiff*)> handle_;
  std::int64_t pageCount_ = 0;
};

// Reads the pages of any TIFF file that libtiff supports. Every function raises ServerError.
class TiffReader {
 public:
  explicit TiffReader(std::string_view bytes);
  std::int64_t pageCount() const noexcept { return pageCount_; }
  // page: from 0.
  PageImage Read(std::int64_t page);

 private:
  std::unique_ptr<tiff, void (*)(tiff*)> handle_;
  std::int64_t pageCount_ = 0;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_PAGE_IMAGE_H_
