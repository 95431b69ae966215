#include <unistd.h>

#include <algorithm>
#include <iterator>

#include "tools/devserver/archive/page_source.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {

PageSource::PageSource(Database& database, std::int64_t documentId, std::int64_t version)
    : database_(database), documentId_(documentId), images_(ReadSegments(database, documentId, version)) {
  std::erase_if(images_, [](const Segment& segment) { return segment.type != SegmentType::kImage; });
}

std::int64_t PageSource::pageCount() const noexcept {
  return images_.empty() ? 0 : images_.back().firstPage + images_.back().pageCount - 1;
}

PageImage PageSource::Read(std::int64_t page) {
  const auto next =
      std::find_if(images_.begin(), images_.end(), [&](const Segment& segment) { return segment.firstPage > page; });
  const Segment& image = *std::prev(next);
  if (!image.contentId) return DrawSamplePage(documentId_, page);
  if (openContentId_ != image.contentId) Open(*image.contentId);
  return reader_->Read(page - image.firstPage);
}

void PageSource::Open(std::int64_t contentId) {
  reader_.reset();
  const Descriptor file = OpenScratchFile();
  ReadContent(database_, contentId, [&](std::string_view bytes) {
    if (write(file.get(), bytes.data(), bytes.size()) != std::ssize(bytes)) throw ServerError("No memory for a page");
  });
  reader_ = std::make_unique<TiffReader>(file.get());
  openContentId_ = contentId;
}

}  // namespace oxaqrycln::devserver
