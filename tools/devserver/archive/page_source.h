// page_source.h - the content of documents on its way into files: stored bytes, and the pages of images.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_PAGE_SOURCE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_PAGE_SOURCE_H_

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/content/page_image.h"

namespace oxaqrycln::devserver {

// The most pages of one TIFF file.
inline constexpr std::size_t kMostPages = 1000;

// Hands the stored bytes of a segment to take, piece by piece.
template <typename Take>
void ReadContent(Database& database, std::int64_t contentId, Take take) {
  ContentBytes content(database, contentId, ContentBytes::Access::kRead);
  std::array<char, 65536> piece;
  while (const std::size_t count = content.Read(piece.data(), piece.size())) take({piece.data(), count});
}

// The pages of a document's image segments; a stored image stays open as long as its pages are asked for.
class PageSource {
 public:
  PageSource(Database& database, std::int64_t documentId, std::int64_t version);

  std::int64_t pageCount() const noexcept;
  // page: from 1, up to pageCount.
  PageImage Read(std::int64_t page);

 private:
  void Open(std::int64_t contentId);

  Database& database_;
  const std::int64_t documentId_;
  std::vector<Segment> images_;
  std::unique_ptr<TiffReader> reader_;
  std::optional<std::int64_t> openContentId_;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_PAGE_SOURCE_H_
