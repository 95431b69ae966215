#include "tools/devserver/commands/handlers.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/archive/import_file.h"
#include "tools/devserver/content/page_image.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::int64_t kLargestImportFile = 16LL << 20U;
constexpr std::int64_t kLargestImage = 256LL << 20U;
constexpr std::int64_t kLargestFile = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kLargestDocument = 1LL << 32U;
constexpr std::size_t kMostSegments = 1000;

std::vector<ImportSet> ReadImportFile(const Call& call) {
  return ParseImportFile(call.blobs.Read(call.parameters[0], kLargestImportFile));
}

// "dd.mm.yyyy" as "yyyy-mm-dd"; nothing for an invalid date.
std::optional<std::string> SortDate(std::string_view date) {
  if (date.size() != 10 || date[2] != '.' || date[5] != '.') return std::nullopt;
  const auto day = ParseNumber(date.substr(0, 2));
  const auto month = ParseNumber(date.substr(3, 2));
  const auto year = ParseNumber(date.substr(6));
  if (!day || !month || !year) return std::nullopt;
  const std::chrono::year_month_day parsed{std::chrono::year(static_cast<int>(*year)),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
  if (!parsed.ok()) return std::nullopt;
  return std::string(date.substr(6)) + "-" + std::string(date.substr(3, 2)) + "-" + std::string(date.substr(0, 2));
}

// Copies the file of the blob directory that the segment names into the archive.
void TakeFile(const Call& call, Segment& segment) {
  const bool isImage = segment.type == SegmentType::kImage;
  const auto file = call.blobs.Open(segment.fileName, isImage ? kLargestImage : kLargestFile);
  segment.fileName = LastPathPart(segment.fileName);
  segment.contentId = AddContent(call.database, [&](char* to, std::size_t room) { return file->Read(to, room); });
  segment.byteCount = ContentLength(call.database, *segment.contentId);
  if (!isImage) return;
  try {
    segment.pageCount = TiffReader(ReadContent(call.database, *segment.contentId)).pageCount();
  } catch (const ServerError& error) {
    throw ServerError("'" + segment.fileName + "': " + error.what());
  }
}

// The segments of the set, with their files taken into the archive.
std::vector<Segment> TakeSegments(const Call& call, const ImportSet& set) {
  std::vector<Segment> segments = set.segments;
  for (Segment& segment : segments) {
    if (segment.fieldId == kDateField && !segment.text.empty() && !SortDate(segment.text)) {
      throw ServerError("Import file: '" + Printable(segment.text) + "' is not a date in the form dd.mm.yyyy");
    }
    if (segment.type != SegmentType::kText) TakeFile(call, segment);
  }
  return segments;
}

bool Holds(const std::vector<Segment>& segments, std::int64_t fieldId) {
  return std::ranges::find(segments, fieldId, &Segment::fieldId) != segments.end();
}

// The old segments, with those of the imported field IDs replaced in their place; new field IDs come at the end.
std::vector<Segment> Merge(const std::vector<Segment>& old, const std::vector<Segment>& imported) {
  std::vector<Segment> merged;
  const auto takeImported = [&](std::int64_t fieldId) {
    if (Holds(merged, fieldId)) return;
    std::ranges::copy_if(imported, std::back_inserter(merged),
                         [&](const Segment& segment) { return segment.fieldId == fieldId; });
  };
  for (const Segment& segment : old) {
    if (Holds(imported, segment.fieldId)) {
      takeImported(segment.fieldId);
    } else {
      merged.push_back(segment);
    }
  }
  for (const Segment& segment : imported) takeImported(segment.fieldId);
  return merged;
}

// Brings the document's row up to date with its newest version. A column that no segment fills stays as it is.
void UpdateRow(Database& database, std::int64_t documentId) {
  Statement newest(database, "SELECT version, title FROM version WHERE document_id = ? ORDER BY version DESC LIMIT 1",
                   documentId);
  newest.executeStep();
  std::array<std::optional<std::string>, 6> values;  // author, customer, type, date, amount, text
  for (const Segment& segment : ReadSegments(database, documentId, newest.Number(0))) {
    if (segment.type != SegmentType::kText) continue;
    const bool hasColumn = segment.fieldId >= kAuthorField && segment.fieldId < kTextField;
    auto& value = values[static_cast<std::size_t>((hasColumn ? segment.fieldId : kTextField) - kAuthorField)];
    value = value ? *value + "\n" + segment.text : segment.text;
  }
  const auto& date = values[kDateField - kAuthorField];
  Statement(database,
            "UPDATE document SET version = ?, title = ?, author = coalesce(?, author), "
            "customer = coalesce(?, customer), type = coalesce(?, type), date = coalesce(?, date), "
            "amount = coalesce(?, amount), text = coalesce(?, text), sort_date = coalesce(?, sort_date) WHERE id = ?",
            newest.Number(0), newest.Text(1), values[0], values[1], values[2], values[3], values[4], values[5],
            date ? SortDate(*date) : std::nullopt, documentId)
      .Run();
}

void StoreVersion(Database& database, const Document& document, const std::vector<Segment>& segments) {
  if (segments.size() > kMostSegments) throw ServerError("A document has at most 1000 segments");
  Statement(database, "INSERT INTO version VALUES (?, ?, ?, ?, ?)", document.id, document.version, document.title,
            document.created, document.changed)
      .Run();
  Statement insert(database, "INSERT INTO segment VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  std::int64_t position = 0;
  std::int64_t byteCount = 0;
  for (const Segment& segment : segments) {
    byteCount += segment.byteCount + std::ssize(segment.text);
    insert.Run(document.id, document.version, ++position, segment.fieldId, static_cast<std::int64_t>(segment.type),
               segment.fileName, segment.pageCount, segment.text, segment.contentId);
  }
  if (byteCount > kLargestDocument) throw ServerError("A document has at most 4 GiB");
  UpdateRow(database, document.id);
}

std::string Identifier(const Document& document) {
  return std::to_string(document.id) + "," + std::to_string(document.version) + "\r\n";
}

std::string Create(const Call& call, const ImportSet& set) {
  const std::string today = LocalTime("%d.%m.%Y");
  const std::int64_t id = call.database.execAndGet("SELECT id FROM next_document").getInt64();
  const Document document{FindArchive(call.database, set.place), id, 1, 1, set.title, today, today};
  if (!document.archive.canCreate) throw ServerError("Documents cannot be created in " + document.archive.reference);
  Statement(call.database, "INSERT INTO document VALUES (?, ?, 1, ?, '', '', '', 'Document', ?, '', '')", document.id,
            document.archive.id, SortDate(today), today)
      .Run();
  StoreVersion(call.database, document, TakeSegments(call, set));
  return Identifier(document);
}

}  // namespace

Reply CreateDocument(const Call& call) {
  Transaction transaction(call.database);
  std::string lines;
  for (const ImportSet& set : ReadImportFile(call)) lines += Create(call, set);
  transaction.commit();
  return lines;
}

Reply EditDocument(const Call& call) {
  Transaction transaction(call.database);
  const std::vector<ImportSet> sets = ReadImportFile(call);
  if (sets.size() != 1) throw ServerError("The import file contains " + std::to_string(sets.size()) + " documents");
  const std::string& identifier = call.parameters[1];
  const std::size_t comma = std::min(identifier.find(','), identifier.size());
  std::vector<std::string> place = sets[0].place;
  place.push_back(identifier.substr(0, comma));
  place.push_back(identifier.substr(std::min(comma + 1, identifier.size())));
  Document document = FindDocument(call.database, place);
  if (!document.archive.canEdit) throw ServerError("Documents cannot be edited in " + document.archive.reference);
  if (document.version != document.newestVersion) {
    throw ServerError("The newest version of document " + std::to_string(document.id) + " is " +
                      std::to_string(document.newestVersion));
  }
  const auto segments = Merge(ReadSegments(call.database, document.id, document.version), TakeSegments(call, sets[0]));
  ++document.version;
  if (!sets[0].title.empty()) document.title = sets[0].title;
  document.changed = LocalTime("%d.%m.%Y");
  StoreVersion(call.database, document, segments);
  transaction.commit();
  return Identifier(document);
}

Reply DeleteDocument(const Call& call) {
  Transaction transaction(call.database);
  const Document document = FindDocument(call.database, call.parameters);
  if (!document.archive.canDelete) throw ServerError("Documents cannot be deleted in " + document.archive.reference);
  Statement versions(call.database, "SELECT count(*) FROM version WHERE document_id = ?", document.id);
  versions.executeStep();
  if (call.parameters[3].empty() || versions.Number(0) == 1) {
    Statement(call.database, "DELETE FROM document WHERE id = ?", document.id).Run();
  } else {
    Statement(call.database, "DELETE FROM version WHERE document_id = ? AND version = ?", document.id, document.version)
        .Run();
    UpdateRow(call.database, document.id);
  }
  call.database.exec("DELETE FROM content WHERE NOT EXISTS (SELECT 1 FROM segment WHERE content_id = content.id)");
  transaction.commit();
  return std::string();
}

}  // namespace oxaqrycln::devserver
