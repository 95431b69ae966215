#include "tools/devserver/archive/sample_documents.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "tools/devserver/archive/documents.h"

namespace oxaqrycln::devserver {
namespace {

// Up to three numbers as printf formats them, into at most 63 characters.
std::string Format(const char* pattern, std::size_t first, std::size_t second = 0, std::size_t third = 0) {
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), pattern, first, second, third);
  return buffer.data();
}

constexpr std::size_t kLastDay = 28;

// Where transport orders begin and end.
constexpr std::array<std::string_view, 7> kPlaces = {"Ostwind, Kai 3", "Ährental",        "Überbach", "Größling am See",
                                                     "Brandach",       "Fønsby, Denmark", "Sankt Mia"};

// The documents of one of the archives.
struct Kind {
  std::string_view type;
  std::string_view subject;
  bool hasAmount;
  bool isScanned;
};

constexpr std::array<Kind, 9> kKinds = {{{"Letter", "Enquiry about", false, true},
                                         {"Letter", "Reply about", false, false},
                                         {"Fax", "Fax about", false, true},
                                         {"Invoice", "Invoice for", true, true},
                                         {"Order", "Order of", true, false},
                                         {"Contract", "Frame contract for", true, true},
                                         {"Drawing", "Zeichnung", false, true},
                                         {"Report", "Prüfbericht", false, false},
                                         {"Minutes", "Besprechung über", false, false}}};
constexpr std::array<std::string_view, 6> kAuthors = {"Anna Förster", "Jonas Weißdorn", "Mia Krähenbühl",
                                                      "Sören Ødebæk", "Lucía Peñarol",  "Tom Brandacher"};
constexpr std::array<std::string_view, 8> kCustomers = {
    "Müllerin & Söhne", "Bäckerei Größling", "Hafenkontor Ostwind",  "Café Brûlant",
    "Lindwurm Fracht",  "Nordlicht Optik",   "Papiermühle Ährental", "Sägewerk Überbach"};
constexpr std::array<std::string_view, 10> kThings = {
    "copper pipes",  "oak shelves", "a flour silo", "reading glasses", "a harbour crane",
    "paper rollers", "saw blades",  "roof trusses", "Türbeschläge",    "a cooling unit"};
constexpr std::array<std::string_view, 8> kSentences = {"Delivery is planned for the end of the month.",
                                                        "Please confirm the quantity before shipping.",
                                                        "The price is 12 € a piece – without packing.",
                                                        "Die Prüfung ergab keine Mängel.",
                                                        "The goods were damaged in transit, see the photographs.",
                                                        "Zahlung innerhalb von dreißig Tagen.",
                                                        "A second offer follows next week.",
                                                        "The meeting agreed on a new schedule."};
constexpr std::array<std::string_view, 2> kNotes = {"Please call back.\nThe customer asks for a shorter term.",
                                                    "Erledigt, Anruf am Vormittag"};

// A fixed sequence of numbers, the same on every machine.
class Sequence {
 public:
  std::size_t Below(std::size_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>(state_ >> 33U) % limit;
  }
  template <typename List>
  std::string Pick(const List& list) {
    return std::string(list[Below(list.size())]);
  }

 private:
  std::uint64_t state_ = 20260314;
};

// A document; all text is UTF-8.
struct SampleDocument {
  SampleDocument(std::size_t number, Sequence& sequence)
      : index(number),
        thing(sequence.Pick(kThings)),
        year(2023 + sequence.Below(4)),
        month(1 + sequence.Below(12)),
        day(1 + sequence.Below(kLastDay)) {
    const std::size_t euros = 10 + sequence.Below(9990);
    const std::size_t cents = sequence.Below(100);
    if (kind.hasAmount) amount = Format("%zu,%02zu", euros, cents);
    for (std::string& sentence : sentences) sentence = sequence.Pick(kSentences);
    version = 1 + sequence.Below(3);
    author = sequence.Pick(kAuthors);
    customer = sequence.Pick(kCustomers);
  }

  std::string Text(std::size_t sentenceCount) const {
    std::string text = sentences[0];
    for (std::size_t sentence = 1; sentence < sentenceCount; ++sentence) text += "\n" + sentences[sentence];
    return text;
  }
  std::string Date(std::size_t ofDay) const { return Format("%02zu.%02zu.%04zu", ofDay, month, year); }
  bool HasFile() const { return index % 4 == 1; }

  std::size_t index;  // from 0
  std::int64_t id = static_cast<std::int64_t>(1001 + index);
  const Kind& kind = kKinds[index % kKinds.size()];
  std::string thing;
  std::size_t year, month, day;
  std::string title = std::string(kind.subject) + " " + thing;
  std::string author, customer, amount;
  std::array<std::string, 3> sentences;
  std::size_t version;  // the newest
};

class Writer {
 public:
  explicit Writer(Database& database) : database_(database) {}

  void Add(const SampleDocument& document) {
    document_.Run(document.id, static_cast<std::int64_t>(document.index % kKinds.size() + 1),
                  static_cast<std::int64_t>(document.version),
                  Utf8{Format("%04zu-%02zu-%02zu", document.year, document.month, document.day)}, Utf8{document.title},
                  Utf8{document.author}, Utf8{document.customer}, Utf8{document.kind.type},
                  Utf8{document.Date(document.day)}, Utf8{document.amount},
                  Utf8{document.Text(document.sentences.size())});
    std::optional<std::int64_t> contentId;
    if (document.HasFile()) {
      contentId = AddContent(database_, "Position;Article;Pieces\r\n1;" + document.thing + ";" +
                                            std::to_string(document.index % 40 + 1) + "\r\n2;packing;1\r\n");
    }
    for (std::size_t version = 1; version <= document.version; ++version) AddVersion(document, version, contentId);
    const std::size_t noteCount = document.index % 5 == 2 ? 1 + document.index % 2 : 0;
    for (std::size_t note = 0; note < noteCount; ++note) {
      note_.Run(document.id, Utf8{note == 0 ? "webuser" : "archive"},
                Utf8{document.Date(kLastDay) + (note == 0 ? " 09:15" : " 14:30")}, Utf8{kNotes[note]});
    }
  }

 private:
  // Each version has one sentence more than the previous one.
  void AddVersion(const SampleDocument& document, std::size_t version, std::optional<std::int64_t> contentId) {
    const std::string date = document.Date(document.day);
    const std::string changed = document.Date(std::min(kLastDay, document.day + 3 * (version - 1)));
    version_.Run(document.id, static_cast<std::int64_t>(version), Utf8{document.title}, Utf8{date}, Utf8{changed});

    std::int64_t position = 0;
    const auto add = [&](std::int64_t fieldId, SegmentType type, const std::string& fileName, const std::string& text) {
      const bool isFile = type == SegmentType::kFile;
      segment_.Run(document.id, static_cast<std::int64_t>(version), ++position, fieldId,
                   static_cast<std::int64_t>(type), Utf8{fileName}, std::int64_t{type == SegmentType::kImage ? 1 : 0},
                   Utf8{text}, isFile ? contentId : std::nullopt);
    };
    add(kAuthorField, SegmentType::kText, "", document.author);
    add(kCustomerField, SegmentType::kText, "", document.customer);
    add(kDateField, SegmentType::kText, "", date);
    if (document.kind.hasAmount) add(kAmountField, SegmentType::kText, "", document.amount);
    const std::size_t sentenceCount = document.sentences.size() - (document.version - version);
    add(kTextField, SegmentType::kText, "", document.Text(sentenceCount));
    const std::size_t pageCount = document.kind.isScanned ? 1 + document.index % 3 : 0;
    for (std::size_t page = 1; page <= pageCount; ++page) {
      add(kPageField, SegmentType::kImage, Format("page%zu.tif", page), "");
    }
    if (document.HasFile()) add(kFileField, SegmentType::kFile, "pieces.csv", "");
  }

  Database& database_;
  Statement document_{database_, "INSERT INTO document VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"};
  Statement version_{database_, "INSERT INTO version VALUES (?, ?, ?, ?, ?)"};
  Statement segment_{database_, "INSERT INTO segment VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"};
  Statement note_{database_, "INSERT INTO note (document_id, author, written, text) VALUES (?, ?, ?, ?)"};
};

}  // namespace

void AddSampleDocuments(Database& database, int count) {
  Writer writer(database);
  Sequence sequence;
  for (int index = 0; index < count; ++index) writer.Add({static_cast<std::size_t>(index), sequence});
}

void AddSampleOrders(Database& database) {
  Statement documents(database,
                      "SELECT id, version, customer, date FROM document "
                      "WHERE archive_id IN (1, 3) OR (archive_id = 5 AND id % 5 = 0) ORDER BY id");
  Statement insert(
      database,
      "INSERT INTO transport_order (id, status, document_id, version, customer, origin, destination, date, "
      "weight) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  for (std::size_t index = 0; documents.executeStep(); ++index) {
    const std::size_t origin = index * 5 % kPlaces.size();
    const std::size_t destination = (origin + 1 + index % (kPlaces.size() - 1)) % kPlaces.size();
    const std::size_t weight = 5 + index * 37 % 240;  // in 100 kg
    insert.Run(Utf8{Format("FA-%04zu", index + 1)}, Utf8{kOrderStatuses[index * 3 % kOrderStatuses.size()]},
               documents.Number(0), documents.Number(1), documents.Text(2), Utf8{kPlaces[origin]},
               Utf8{kPlaces[destination]}, documents.Text(3), Utf8{Format("%zu,%zu", weight / 10, weight % 10)});
  }
}

}  // namespace oxaqrycln::devserver
