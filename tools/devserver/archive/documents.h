// documents.h - the stored documents: finding one, its segments and their contents, the number of its notes.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DOCUMENTS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DOCUMENTS_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/devserver/archive/database.h"

namespace oxaqrycln::devserver {

struct Archive {
  std::int64_t id;
  std::string reference;  // $(#channel)\archive, in the letter case of the archive
  bool canCreate;
  bool canEdit;
  bool canDelete;
};
// place: channel and archive in any letter case; further elements are ignored. Raises ServerError when there is none.
Archive FindArchive(Database& database, std::span<const std::string> place);

struct Document {
  Archive archive;
  std::int64_t id;
  std::int64_t version;
  std::int64_t newestVersion;
  std::string title;
  std::string created;
  std::string changed;
};
// place: channel, archive, document ID and version; further elements are ignored. An empty version is the newest.
// Raises ServerError when there is none.
Document FindDocument(Database& database, std::span<const std::string> place);

enum class SegmentType : std::int64_t { kText = 1, kImage = 2, kFile = 3 };

// The fields from kAuthorField to kTextField have columns of their own in the row of a document.
inline constexpr std::int64_t kAuthorField = 11;
inline constexpr std::int64_t kCustomerField = 12;
inline constexpr std::int64_t kDateField = 14;
inline constexpr std::int64_t kAmountField = 15;
inline constexpr std::int64_t kTextField = 16;
inline constexpr std::int64_t kPageField = 20;
inline constexpr std::int64_t kFileField = 30;

struct Segment {
  std::int64_t position = 0;  // from 1
  std::int64_t fieldId = 0;
  SegmentType type = SegmentType::kText;
  std::string fileName;        // "" for a text
  std::int64_t pageCount = 0;  // of an image
  std::int64_t firstPage = 0;  // of an image: its first page's number in the document, from 1
  std::string text;            // lines end with LF
  std::optional<std::int64_t> contentId;
  std::int64_t byteCount = 0;  // of its image or file; 0 for a text

  std::string Extension() const;
  std::string Name() const;
  std::string Title() const;
};
// All segments of a version in order; none when the version is unknown.
std::vector<Segment> ReadSegments(Database& database, std::int64_t documentId, std::int64_t version);

// Stores the bytes as new content and returns its number.
std::int64_t AddContent(Database& database, std::string_view bytes);
// The same for what read(to, room) supplies; it returns the number of bytes read, 0 at the end only.
std::int64_t AddContent(Database& database, const std::function<std::size_t(char*, std::size_t)>& read);
std::int64_t ContentLength(Database& database, std::int64_t contentId);
// Calls write with one piece of the content after the other.
void CopyContent(Database& database, std::int64_t contentId, const std::function<void(std::string_view)>& write);
// All bytes of the content.
std::string ReadContent(Database& database, std::int64_t contentId);

// The column of the full-text index that holds the field; "text" for fields without a column of their own.
std::string ColumnOfField(std::int64_t fieldId);

std::int64_t NoteCount(Database& database, const Document& document);

// The local time in a format of strftime.
std::string LocalTime(const char* format);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_DOCUMENTS_H_
