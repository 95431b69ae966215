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
  std::string_view name;
  std::string_view title;
  bool isColumn;
};
constexpr std::array<FieldKind, 8> kFieldKinds = {{{kAuthorField, "author", "Author", true},
                                                   {12, "customer", "Customer", true},
                                                   {13, "type", "Type", true},
                                                   {14, "date", "Date", true},
                                                   {15, "amount", "Amount", true},
                                                   {kTextField, "text", "Text", true},
                                                   {kPageField, "page", "Page", false},
                                                   {kFileField, "file", "Attachment", false}}};

const FieldKind* FindKind(std::int64_t id) {
  const auto* found =
      std::find_if(kFieldKinds.begin(), kFieldKinds.end(), [&](const FieldKind& kind) { return kind.id == id; });
  return found == kFieldKinds.end() ? nullptr : found;
}

}  // namespace

Archive FindArchive(Database& database, const std::string& channel, const std::string& archive) {
  Statement query(database,
                  "SELECT archive.id, '$(#' || channel.name || ')\\' || archive.name, can_create, can_edit, can_delete "
                  "FROM archive JOIN channel ON channel.id = channel_id WHERE channel.name = ? AND archive.name = ?");
  query.Bind(1, std::string_view(channel)).Bind(2, std::string_view(archive));
  if (!query.Next()) {
    throw ServerError("There is no archive $(#" + Printable(channel) + ")\\" + Printable(archive));
  }
  return {query.Number(0), query.Text(1), query.Number(2) != 0, query.Number(3) != 0, query.Number(4) != 0};
}

Document FindDocument(Database& database, std::span<const std::string> place) {
  Archive archive = FindArchive(database, place[0], place[1]);
  const std::string& id = place[2];
  const std::string& version = place[3];
  Statement document(database, "SELECT version FROM document WHERE id = ? AND archive_id = ?");
  document.Bind(1, ParseNumber(id).value_or(-1)).Bind(2, archive.id);
  if (!document.Next()) throw ServerError("There is no document '" + Printable(id) + "' in " + archive.reference);
  const std::int64_t newest = document.Number(0);
  const std::int64_t wanted = version.empty() ? newest : ParseNumber(version).value_or(-1);
  Statement query(database, "SELECT title, created, changed FROM version WHERE document_id = ? AND version = ?");
  query.Bind(1, *ParseNumber(id)).Bind(2, wanted);
  if (!query.Next()) throw ServerError("Document " + id + " has no version '" + Printable(version) + "'");
  return {std::move(archive), *ParseNumber(id), wanted, newest, query.Text(0), query.Text(1), query.Text(2)};
}

std::string Segment::Extension() const {
  if (type == SegmentType::kText) return "txt";
  const std::size_t dot = fileName.rfind('.');
  return dot == std::string::npos ? std::string() : fileName.substr(dot + 1);
}

std::string Segment::Name() const {
  const FieldKind* kind = FindKind(fieldId);
  return kind == nullptr ? "field" + std::to_string(fieldId) : std::string(kind->name);
}

std::string Segment::Title() const {
  if (type == SegmentType::kImage) return "Page " + std::to_string(firstPage);
  const FieldKind* kind = FindKind(fieldId);
  return kind == nullptr ? "Field " + std::to_string(fieldId) : std::string(kind->title);
}

std::vector<Segment> ReadSegments(Database& database, const Document& document) {
  return ReadSegments(database, document.id, document.version);
}

std::vector<Segment> ReadSegments(Database& database, std::int64_t documentId, std::int64_t version) {
  Statement query(database,
                  "SELECT position, field_id, type, file_name, page_count, text, content_id, length(bytes) "
                  "FROM segment LEFT JOIN content ON content.id = content_id "
                  "WHERE document_id = ? AND version = ? ORDER BY position");
  query.Bind(1, documentId).Bind(2, version);
  std::vector<Segment> segments;
  std::int64_t nextPage = 1;
  while (query.Next()) {
    Segment segment{query.Number(0), query.Number(1), static_cast<SegmentType>(query.Number(2)),
                    query.Text(3),   query.Number(4), nextPage,
                    query.Text(5),   std::nullopt,    query.Number(7)};
    if (!query.IsNull(6)) segment.contentId = query.Number(6);
    if (segment.type == SegmentType::kImage && !segment.contentId) {
      segment.byteCount = SamplePageByteCount(documentId, segment.firstPage);
    }
    nextPage += segment.pageCount;
    segments.push_back(std::move(segment));
  }
  return segments;
}

std::string_view ColumnOfField(std::int64_t fieldId) {
  const FieldKind* kind = FindKind(fieldId);
  return kind == nullptr || !kind->isColumn ? "text" : kind->name;
}

std::int64_t NoteCount(Database& database, const Document& document) {
  Statement query(database, "SELECT count(*) FROM note WHERE document_id = ?");
  query.Bind(1, document.id).Next();
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
