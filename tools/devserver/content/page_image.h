// page_image.h - page images: the sample archive's own, drawn here, and TIFF files with any number of them.
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

// Rows from the top. Black and white: a bit a pixel, 1 is black, the highest bit first; in colour: red, green, blue.
struct PageImage {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool inColour = false;
  std::vector<std::uint8_t> bytes;

  std::size_t RowByteCount() const noexcept { return inColour ? std::size_t{width} * 3 : (std::size_t{width} + 7) / 8; }
};

// The page of a scanned sample document: a frame, bars for lines of text, the document's and the page's number. The
// same in every run.
PageImage DrawSamplePage(std::int64_t documentId, std::int64_t page);
// The TIFF file that holds that page alone.
std::string SamplePageTiff(std::int64_t documentId, std::int64_t page);

// Makes a TIFF file in memory. Every function raises ServerError.
class TiffWriter {
 public:
  TiffWriter();
  void Add(const PageImage& page);
  // The whole file. Nothing may be added after it.
  std::string Finish();

 private:
  Descriptor file_;
  std::unique_ptr<tiff, void (*)(tiff*)> handle_;
  std::int64_t pageCount_ = 0;
};

// Reads the pages of a TIFF file of any kind that libtiff knows. Every function raises ServerError.
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
