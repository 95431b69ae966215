#include "tools/devserver/archive/page_source.h"

#include <algorithm>
#include <iterator>

namespace oxaqrycln::devserver {

PageSource::PageSource(Database& database, std::int64_t documentId, std::int64_t version)
    : database_(database), documentId_(documentId), images_(ReadSegments(database, documentId, version)) {
  std::erase_if(images_, [](const Segment& segment) { return segment.type != SegmentType::kImage; });
}

std::int64_t PageSource::pageCount() const noexcept {
  return images_.empty() ? 0 : images_.back().firstPage + images_.back().pageCount - 1;
}

PageImage PageSource::Read(std::int64_t page) {
  const Segment& image = *std::prev(std::ranges::upper_bound(images_, page, {}, &Segment::firstPage));
  if (!image.contentId) return DrawSamplePage(documentId_, page);
  if (readerContentId_ != image.contentId) {
    reader_ = std::make_unique<TiffReader>(ReadContent(database_, *image.contentId));
    readerContentId_ = image.contentId;
  }
  return reader_->Read(page - image.firstPage);
}

}  // namespace oxaqrycln::devserver
