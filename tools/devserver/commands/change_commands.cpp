#include "tools/devserver/commands/change_commands.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/archive/import_file.h"
#include "tools/devserver/content/page_image.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::int64_t kLargestImportFile = 16LL << 20U;
constexpr std::int64_t kLargestFile = 256LL << 20U;
constexpr std::int64_t kLargestDocument = 1LL << 30U;
constexpr std::size_t kMostSegments = 1000;
constexpr std::int64_t kDateField = 14;

std::vector<ImportSet> ReadImportFile(const Call& call) {
  ReadableFile file = call.blobs.Open(call.blobs.NameOf(call.parameters[0]));
  if (file.byteCount() > kLargestImportFile) throw ServerError("The import file is larger than 16 MiB");
  std::string bytes(static_cast<std::size_t>(file.byteCount()), '\0');
  std::size_t byteCount = 0;
  while (byteCount < bytes.size()) {
    const std::size_t count = file.Read(bytes.data() + byteCount, bytes.size() - byteCount);
    if (count == 0) break;
    byteCount += count;
  }
  return ParseImportFile(std::string_view(bytes).substr(0, byteCount));
}

// "dd.mm.yyyy" as "yyyy-mm-dd"; nothing for what is no date.
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

// Copies a file of the blob directory into the segment.
void TakeFile(const Call& call, Segment& segment) {
  segment.fileName = call.blobs.NameOf(segment.fileName);
  ReadableFile file = call.blobs.Open(segment.fileName);
  if (file.byteCount() > kLargestFile) throw ServerError("'" + segment.fileName + "' is larger than 256 MiB");
  if (segment.type == SegmentType::kImage) {
    try {
      segment.pageCount = TiffReader(file.descriptor()).pageCount();
    } catch (const ServerError& error) {
      throw ServerError("'" + segment.fileName + "': " + error.what());
    }
    file.Rewind();
  }
  Statement insert(call.database, "INSERT INTO content (bytes) VALUES (?)");
  insert.BindZeroBytes(1, file.byteCount()).Run();
  segment.contentId = call.database.LastRow();
  segment.byteCount = file.byteCount();
  ContentBytes content(call.database, *segment.contentId, ContentBytes::Access::kWrite);
  std::array<char, 65536> piece;
  for (std::int64_t missing = segment.byteCount; missing > 0;) {
    const std::size_t count =
        file.Read(piece.data(), static_cast<std::size_t>(std::min<std::int64_t>(missing, std::ssize(piece))));
    if (count == 0) throw ServerError("'" + segment.fileName + "' became shorter while it was read");
    content.Write({piece.data(), count});
    missing -= static_cast<std::int64_t>(count);
  }
}

std::vector<Segment> ImportedSegments(const Call& call, const ImportSet& set) {
  std::vector<Segment> segments;
  for (const ImportField& field : set.fields) {
    Segment segment{0, field.id, field.type, "", 0, 0, "", std::nullopt, 0};
    (field.type == SegmentType::kText ? segment.text : segment.fileName) = field.content;
    if (field.id == kDateField && !field.content.empty() && !SortDate(field.content)) {
      throw ServerError("Import file: '" + Printable(field.content) + "' is no date dd.mm.yyyy");
    }
    if (field.type != SegmentType::kText) TakeFile(call, segment);
    segments.push_back(std::move(segment));
  }
  return segments;
}

// The old segments with those of the imported field IDs replaced, in their place; new field IDs come at the end.
std::vector<Segment> Merge(const std::vector<Segment>& old, const std::vector<Segment>& imported) {
  std::vector<Segment> merged;
  const auto moveIn = [&](std::int64_t fieldId) {
    std::copy_if(imported.begin(), imported.end(), std::back_inserter(merged),
                 [&](const Segment& segment) { return segment.fieldId == fieldId; });
  };
  const auto holds = [](const std::vector<Segment>& list, std::int64_t fieldId) {
    return std::any_of(list.begin(), list.end(), [&](const Segment& segment) { return segment.fieldId == fieldId; });
  };
  for (const Segment& segment : old) {
    if (!holds(imported, segment.fieldId)) {
      merged.push_back(segment);
    } else if (!holds(merged, segment.fieldId)) {
      moveIn(segment.fieldId);
    }
  }
  for (const Segment& segment : imported) {
    if (!holds(merged, segment.fieldId)) moveIn(segment.fieldId);
  }
  return merged;
}

// Makes the document's row what its newest version says. A column that no segment fills stays as it is.
void UpdateRow(Database& database, Document document) {
  Statement newest(database, "SELECT version, title FROM version WHERE document_id = ? ORDER BY version DESC LIMIT 1");
  newest.Bind(1, document.id).Next();
  document.version = newest.Number(0);
  std::array<std::optional<std::string>, 6> values;  // author, customer, type, date, amount, text
  for (const Segment& segment : ReadSegments(database, document)) {
    if (segment.type != SegmentType::kText) continue;
    const bool hasColumn = segment.fieldId >= kAuthorField && segment.fieldId < kTextField;
    auto& value = values[static_cast<std::size_t>((hasColumn ? segment.fieldId : kTextField) - kAuthorField)];
    value = value ? *value + "\n" + segment.text : segment.text;
  }
  Statement update(database,
                   "UPDATE document SET version = ?1, title = ?2, author = coalesce(?3, author), "
                   "customer = coalesce(?4, customer), type = coalesce(?5, type), date = coalesce(?6, date), "
                   "amount = coalesce(?7, amount), text = coalesce(?8, text), sort_date = coalesce(?9, sort_date) "
                   "WHERE id = ?10");
  update.Bind(1, document.version).Bind(2, std::string_view(newest.Text(1))).Bind(10, document.id);
  for (std::size_t column = 0; column < values.size(); ++column) {
    if (values[column]) update.Bind(static_cast<int>(column) + 3, std::string_view(*values[column]));
  }
  const auto sortDate = values[kDateField - kAuthorField] ? SortDate(*values[kDateField - kAuthorField]) : std::nullopt;
  if (sortDate) update.BindUtf8(9, *sortDate);
  update.Run();
}

void StoreVersion(Database& database, const Document& document, const std::vector<Segment>& segments) {
  if (segments.size() > kMostSegments) throw ServerError("A document has at most 1000 segments");
  Statement version(database, "INSERT INTO version VALUES (?, ?, ?, ?, ?)");
  version.Bind(1, document.id).Bind(2, document.version).Bind(3, std::string_view(document.title));
  version.Bind(4, std::string_view(document.created)).Bind(5, std::string_view(document.changed)).Run();
  Statement insert(database, "INSERT INTO segment VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  insert.Bind(1, document.id).Bind(2, document.version);
  std::int64_t position = 0;
  std::int64_t byteCount = 0;
  for (const Segment& segment : segments) {
    byteCount += segment.byteCount + std::ssize(segment.text);
    insert.Bind(3, ++position).Bind(4, segment.fieldId).Bind(5, static_cast<std::int64_t>(segment.type));
    insert.Bind(6, std::string_view(segment.fileName)).Bind(7, segment.pageCount);
    insert.Bind(8, std::string_view(segment.text)).BindNull(9);
    if (segment.contentId) insert.Bind(9, *segment.contentId);
    insert.Run();
  }
  if (byteCount > kLargestDocument) throw ServerError("A document has at most 1 GiB");
  UpdateRow(database, document);
}

std::string Identifier(const Document& document) {
  return std::to_string(document.id) + "," + std::to_string(document.version) + "\r\n";
}

std::string Create(const Call& call, const ImportSet& set) {
  const std::string today = LocalTime("%d.%m.%Y");
  Statement number(call.database, "SELECT id FROM next_document");
  number.Next();
  const Document document{
      FindArchive(call.database, set.channel, set.archive), number.Number(0), 1, 1, set.title, today, today};
  if (!document.archive.canCreate) throw ServerError("Nothing can be created in " + document.archive.reference);
  Statement insert(call.database, "INSERT INTO document VALUES (?1, ?2, 1, ?3, '', '', '', 'Document', ?4, '', '')");
  insert.Bind(1, document.id).Bind(2, document.archive.id).BindUtf8(3, *SortDate(today)).BindUtf8(4, today).Run();
  StoreVersion(call.database, document, ImportedSegments(call, set));
  return Identifier(document);
}

// Deletes the contents among these that no version needs any more.
void DeleteContents(Database& database, const std::vector<std::int64_t>& contentIds) {
  Statement statement(database,
                      "DELETE FROM content WHERE id = ?1 AND NOT EXISTS (SELECT 1 FROM segment WHERE content_id = ?1)");
  for (const std::int64_t id : contentIds) statement.Bind(1, id).Run();
}

}  // namespace

Reply CreateDocument(const Call& call) {
  Transaction transaction(call.database);
  std::string lines;
  for (const ImportSet& set : ReadImportFile(call)) lines += Create(call, set);
  transaction.Commit();
  return lines;
}

Reply EditDocument(const Call& call) {
  Transaction transaction(call.database);
  const std::vector<ImportSet> sets = ReadImportFile(call);
  if (sets.size() != 1) throw ServerError("The import file holds " + std::to_string(sets.size()) + " documents");
  const std::string& identifier = call.parameters[1];
  const std::size_t comma = std::min(identifier.find(','), identifier.size());
  const std::vector<std::string> key = {sets[0].channel, sets[0].archive, identifier.substr(0, comma),
                                        identifier.substr(std::min(comma + 1, identifier.size()))};
  Document document = FindDocument(call.database, key);
  if (!document.archive.canEdit) throw ServerError("Nothing can be edited in " + document.archive.reference);
  if (document.version != document.newestVersion) {
    throw ServerError("Document " + key[2] + " has version " + std::to_string(document.newestVersion) + " by now");
  }
  const auto segments = Merge(ReadSegments(call.database, document), ImportedSegments(call, sets[0]));
  ++document.version;
  if (!sets[0].title.empty()) document.title = sets[0].title;
  document.changed = LocalTime("%d.%m.%Y");
  StoreVersion(call.database, document, segments);
  transaction.Commit();
  return Identifier(document);
}

Reply DeleteDocument(const Call& call) {
  Transaction transaction(call.database);
  const Document document = FindDocument(call.database, call.parameters);
  if (!document.archive.canDelete) throw ServerError("Nothing can be deleted in " + document.archive.reference);
  std::vector<std::int64_t> contentIds;
  Statement contents(call.database,
                     "SELECT DISTINCT content_id FROM segment WHERE document_id = ? AND content_id IS NOT NULL");
  contents.Bind(1, document.id);
  while (contents.Next()) contentIds.push_back(contents.Number(0));

  Statement versions(call.database, "SELECT count(*) FROM version WHERE document_id = ?");
  versions.Bind(1, document.id).Next();
  if (call.parameters[3].empty() || versions.Number(0) == 1) {
    Statement(call.database, "DELETE FROM document WHERE id = ?").Bind(1, document.id).Run();
  } else {
    Statement statement(call.database, "DELETE FROM version WHERE document_id = ? AND version = ?");
    statement.Bind(1, document.id).Bind(2, document.version).Run();
    UpdateRow(call.database, document);
  }
  DeleteContents(call.database, contentIds);
  transaction.Commit();
  return std::string();
}

}  // namespace oxaqrycln::devserver
