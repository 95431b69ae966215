#include "tools/devserver/archive/documents.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "tools/devserver/content/page_image.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {
namespace {

struct FieldKind {
  std::int64_t id;
  std::string name;
  std::string title;
};

// A field with an unknown ID gets a name and a title made of the ID.
FieldKind KindOf(std::int64_t fieldId) {
  static const std::array<FieldKind, 8> kKinds = {{{kAuthorField, "author", "Author"},
                                                   {kCustomerField, "customer", "Customer"},
                                                   {13, "type", "Type"},
                                                   {kDateField, "date", "Date"},
                                                   {kAmountField, "amount", "Amount"},
                                                   {kTextField, "text", "Text"},
                                                   {kPageField, "page", "Page"},
                                                   {kFileField, "file", "Attachment"}}};
  const auto* const found = std::ranges::find(kKinds, fieldId, &FieldKind::id);
  if (found != kKinds.end()) return *found;
  return {fieldId, "field" + std::to_string(fieldId), "Field " + std::to_string(fieldId)};
}

}  // namespace

Archive FindArchive(Database& database, std::span<const std::string> place) {
  Statement query(database,
                  "SELECT archive.id, '$(#' || channel.name || ')\\' || archive.name, can_create, can_edit, can_delete "
                  "FROM archive JOIN channel ON channel.id = channel_id WHERE channel.name = ? AND archive.name = ?",
                  place[0], place[1]);
  if (!query.executeStep()) {
    throw ServerError("There is no archive $(#" + Printable(place[0]) + ")\\" + Printable(place[1]));
  }
  return {query.Number(0), query.Text(1), query.Number(2) != 0, query.Number(3) != 0, query.Number(4) != 0};
}

Document FindDocument(Database& database, std::span<const std::string> place) {
  Archive archive = FindArchive(database, place);
  const std::int64_t id = ParseNumber(place[2]).value_or(-1);
  Statement newest(database, "SELECT version FROM document WHERE id = ? AND archive_id = ?", id, archive.id);
  if (!newest.executeStep()) {
    throw ServerError("There is no document '" + Printable(place[2]) + "' in " + archive.reference);
  }
  const std::string& version = place[3];
  const std::int64_t wanted = version.empty() ? newest.Number(0) : ParseNumber(version).value_or(-1);
  Statement query(database, "SELECT title, created, changed FROM version WHERE document_id = ? AND version = ?", id,
                  wanted);
  if (!query.executeStep()) {
    throw ServerError("Document " + std::to_string(id) + " has no version '" + Printable(version) + "'");
  }
  return {std::move(archive), id, wanted, newest.Number(0), query.Text(0), query.Text(1), query.Text(2)};
}

std::string Segment::Extension() const {
  if (type == SegmentType::kText) return "txt";
  const std::size_t dot = fileName.rfind('.');
  return dot == std::string::npos ? std::string() : fileName.substr(dot + 1);
}

std::string Segment::Name() const { return KindOf(fieldId).name; }

std::string Segment::Title() const {
  return type == SegmentType::kImage ? "Page " + std::to_string(firstPage) : KindOf(fieldId).title;
}

std::vector<Segment> ReadSegments(Database& database, std::int64_t documentId, std::int64_t version) {
  Statement query(database,
                  "SELECT position, field_id, type, file_name, page_count, text, content_id, byte_count "
                  "FROM segment LEFT JOIN content ON content.id = content_id "
                  "WHERE document_id = ? AND version = ? ORDER BY position",
                  documentId, version);
  std::vector<Segment> segments;
  std::int64_t nextPage = 1;
  while (query.executeStep()) {
    Segment segment{query.Number(0), query.Number(1), static_cast<SegmentType>(query.Number(2)),
                    query.Text(3),   query.Number(4), nextPage,
                    query.Text(5),   std::nullopt,    query.Number(7)};
    if (!query.isColumnNull(6)) segment.contentId = query.Number(6);
    if (segment.type == SegmentType::kImage && !segment.contentId) {
      segment.byteCount = std::ssize(SamplePageTiff(documentId, segment.firstPage));
    }
    nextPage += segment.pageCount;
    segments.push_back(std::move(segment));
  }
  return segments;
}

std::int64_t AddContent(Database& database, std::string_view bytes) {
  return AddContent(database, [&](char* to, std::size_t room) {
    const std::size_t count = bytes.copy(to, room);
    bytes.remove_prefix(count);
    return count;
  });
}

std::int64_t AddContent(Database& database, const std::function<std::size_t(char*, std::size_t)>& read) {
  constexpr std::size_t kPieceByteCount = std::size_t{1} << 20U;
  Statement(database, "INSERT INTO content (byte_count) VALUES (0)").Run();
  const std::int64_t id = database.getLastInsertRowid();
  Statement insert(database, "INSERT INTO content_piece VALUES (?, ?, ?)");
  std::string piece(kPieceByteCount, '\0');
  std::int64_t position = 0;
  while (const std::size_t count = read(piece.data(), piece.size())) {
    insert.bindNoCopy(3, piece.data(), static_cast<int>(count));
    insert.Run(id, position);
    position += static_cast<std::int64_t>(count);
  }
  Statement(database, "UPDATE content SET byte_count = ? WHERE id = ?", position, id).Run();
  return id;
}

std::int64_t ContentLength(Database& database, std::int64_t contentId) {
  Statement query(database, "SELECT byte_count FROM content WHERE id = ?", contentId);
  query.executeStep();
  return query.Number(0);
}

void CopyContent(Database& database, std::int64_t contentId, const std::function<void(std::string_view)>& write) {
  Statement query(database, "SELECT bytes FROM content_piece WHERE content_id = ? ORDER BY position", contentId);
  while (query.executeStep()) {
    const SQLite::Column bytes = query.getColumn(0);
    write({static_cast<const char*>(bytes.getBlob()), static_cast<std::size_t>(bytes.getBytes())});
  }
}

std::string ReadContent(Database& database, std::int64_t contentId) {
  std::string bytes;
  CopyContent(database, contentId, [&](std::string_view piece) { bytes += piece; });
  return bytes;
}

std::string ColumnOfField(std::int64_t fieldId) {
  return fieldId >= kAuthorField && fieldId < kTextField ? KindOf(fieldId).name : "text";
}

std::int64_t NoteCount(Database& database, const Document& document) {
  Statement query(database, "SELECT count(*) FROM note WHERE document_id = ?", document.id);
  query.executeStep();
  return query.Number(0);
}

std::string LocalTime(const char* format) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 64> buffer{};
  return {buffer.data(), std::strftime(buffer.data(), buffer.size(), format, &local)};
}

}  // namespace oxaqrycln::devserver
