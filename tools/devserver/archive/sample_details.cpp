#include "tools/devserver/archive/sample_details.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "tools/devserver/archive/documents.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::size_t kLastDay = 28;

bool IsScanned(std::int64_t archiveId) {
  constexpr std::array<std::int64_t, 5> kScanned = {1, 3, 4, 6, 7};
  return std::find(kScanned.begin(), kScanned.end(), archiveId) != kScanned.end();
}

// Adds the segments of one version, in order.
class SegmentRows {
 public:
  SegmentRows(Statement& insert, std::int64_t documentId, std::int64_t version)
      : insert_(insert), documentId_(documentId), version_(version) {}

  void AddText(std::int64_t fieldId, const std::string& text) { Add(fieldId, SegmentType::kText, "", text, {}); }
  void AddPage(std::size_t number) {
    Add(kPageField, SegmentType::kImage, "page" + std::to_string(number) + ".tif", "", {});
  }
  void AddFile(const std::string& name, std::int64_t contentId) {
    Add(kFileField, SegmentType::kFile, name, "", contentId);
  }

 private:
  void Add(std::int64_t fieldId, SegmentType type, const std::string& fileName, const std::string& text,
           std::optional<std::int64_t> contentId) {
    insert_.Bind(1, documentId_).Bind(2, version_).Bind(3, ++position_).Bind(4, fieldId);
    insert_.Bind(5, static_cast<std::int64_t>(type)).BindUtf8(6, fileName);
    insert_.Bind(7, std::int64_t{type == SegmentType::kImage ? 1 : 0}).BindUtf8(8, text);
    if (contentId) {
      insert_.Bind(9, *contentId);
    } else {
      insert_.BindNull(9);
    }
    insert_.Run();
  }

  Statement& insert_;
  std::int64_t documentId_;
  std::int64_t version_;
  std::int64_t position_ = 0;
};

}  // namespace

const char* const kSampleMasks = R"sql(
INSERT INTO mask SELECT id, 0, 'Standard' FROM archive;
INSERT INTO mask_field SELECT id, 0, 1, 40, 'L', 'author', 1, '', 0, '' FROM archive;
INSERT INTO mask_field SELECT id, 0, 2, 40, 'L', 'customer', 0, '', 0,
  'Müllerin & Söhne;Hafenkontor Ostwind;Lindwurm Fracht' FROM archive;
INSERT INTO mask_field SELECT id, 0, 3, 10, 'L', 'date', 1, '01.01.2026', 0, '' FROM archive;
INSERT INTO mask_field SELECT id, 0, 4, 80, 'L', 'text', 0, '', 0, '' FROM archive;
INSERT INTO mask SELECT id, 1, 'Amount' FROM archive WHERE channel_id = 2;
INSERT INTO mask_field SELECT id, 1, 1, 12, 'R', 'amount', 1, '0,00', 0, '' FROM archive WHERE channel_id = 2;
INSERT INTO mask_field SELECT id, 1, 2, 20, 'L', 'type', 1, 'Invoice', 1, 'Invoice;Order;Contract' FROM archive
  WHERE channel_id = 2;
INSERT INTO mask VALUES (9, 1, 'Empty');
)sql";

std::string SampleDate(std::size_t day, std::size_t month, std::size_t year) {
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%02zu.%02zu.%04zu", day, month, year);
  return buffer.data();
}

SampleDetails::SampleDetails(Database& database)
    : database_(database),
      version_(database, "INSERT INTO version VALUES (?, ?, ?, ?, ?)"),
      segment_(database, "INSERT INTO segment VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      content_(database, "INSERT INTO content (bytes) VALUES (CAST(? AS BLOB))"),
      note_(database, "INSERT INTO note (document_id, author, written, text) VALUES (?, ?, ?, ?)") {}

void SampleDetails::Add(const SampleDocument& document) {
  if (document.index % 4 == 1) {
    content_.BindUtf8(1, "Position;Article;Pieces\r\n1;" + document.thing + ";" +
                             std::to_string(document.index % 40 + 1) + "\r\n2;packing;1\r\n");
    content_.Run();
  }
  const std::int64_t contentId = database_.LastRow();
  for (std::int64_t version = 1; version <= document.version; ++version) AddVersion(document, version, contentId);
  AddNotes(document);
}

// Every version has one sentence more than the one before.
void SampleDetails::AddVersion(const SampleDocument& document, std::int64_t version, std::int64_t contentId) {
  const std::string date = SampleDate(document.day, document.month, document.year);
  const std::size_t changedDay = std::min(kLastDay, document.day + 3 * static_cast<std::size_t>(version - 1));
  version_.Bind(1, document.id).Bind(2, version).BindUtf8(3, document.title).BindUtf8(4, date);
  version_.BindUtf8(5, SampleDate(changedDay, document.month, document.year)).Run();

  SegmentRows rows(segment_, document.id, version);
  rows.AddText(kAuthorField, document.author);
  rows.AddText(12, document.customer);
  rows.AddText(14, date);
  if (!document.amount.empty()) rows.AddText(15, document.amount);
  std::string text = document.sentences[0];
  const auto sentences = document.sentences.size() - static_cast<std::size_t>(document.version - version);
  for (std::size_t sentence = 1; sentence < sentences; ++sentence) text += "\n" + document.sentences[sentence];
  rows.AddText(kTextField, text);
  for (std::size_t page = 1; IsScanned(document.archiveId) && page <= 1 + document.index % 3; ++page)
    rows.AddPage(page);
  if (document.index % 4 == 1) rows.AddFile("pieces.csv", contentId);
}

void SampleDetails::AddNotes(const SampleDocument& document) {
  const std::array<const char*, 2> texts = {"Please call back.\nThe customer asks for a shorter term.",
                                            "Erledigt, Anruf am Vormittag"};
  const std::size_t count = document.index % 5 == 2 ? 1 + document.index % 2 : 0;
  for (std::size_t note = 0; note < count; ++note) {
    note_.Bind(1, document.id).BindUtf8(2, note == 0 ? "webuser" : "archive");
    note_.BindUtf8(3, SampleDate(kLastDay, document.month, document.year) + (note == 0 ? " 09:15" : " 14:30"));
    note_.BindUtf8(4, texts[note]).Run();
  }
}

}  // namespace oxaqrycln::devserver
