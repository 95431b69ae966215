// page_source.h - the pages of all images of a document, numbered through.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_PAGE_SOURCE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_PAGE_SOURCE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/content/page_image.h"

namespace oxaqrycln::devserver {

// Keeps the stored image that was read last.
class PageSource {
 public:
  PageSource(Database& database, std::int64_t documentId, std::int64_t version);

  std::int64_t pageCount() const noexcept;
  // page: from 1 to pageCount.
  PageImage Read(std::int64_t page);

 private:
  Database& database_;
  const std::int64_t documentId_;
  std::vector<Segment> images_;
  std::unique_ptr<TiffReader> reader_;
  std::optional<std::int64_t> readerContentId_;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_PAGE_SOURCE_H_
