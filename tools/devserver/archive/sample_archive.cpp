#include "tools/devserver/archive/sample_archive.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "tools/devserver/archive/sample_details.h"
#include "tools/devserver/archive/sample_orders.h"
#include "tools/devserver/archive/schema.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

// The version of schema.sql, kept in the database's user version.
constexpr std::int64_t kSchemaVersion = 3;

constexpr const char* kStructure = R"sql(
INSERT INTO channel VALUES
  (1, 'Mail', 'Incoming and outgoing mail'), (2, 'Finance', 'Invoices, orders and contracts'),
  (3, 'Technik', 'Zeichnungen und Prüfberichte'), (4, 'Büro', 'Protokolle, Aushänge'),
  (5, 'Projects', 'Nothing filed here yet');
INSERT INTO archive VALUES
  (1, 1, 'Inbox', 'Letters received', 1, 1, 0, 1, 1), (2, 1, 'Outbox', 'Letters sent', 1, 1, 0, 1, 0),
  (3, 1, 'Fax', 'Faxes received, as scanned', 0, 0, 0, 1, 1),
  (4, 2, 'Invoices', 'Invoices since 2023', 1, 0, 0, 1, 1), (5, 2, 'Orders', 'Customer orders', 1, 1, 1, 1, 0),
  (6, 2, 'Contracts', 'Frame contracts', 0, 0, 0, 1, 1),
  (7, 3, 'Zeichnungen', 'Drawings, all revisions', 1, 1, 0, 1, 1),
  (8, 3, 'Prüfberichte', 'Test reports', 1, 1, 0, 1, 0), (9, 4, 'Protokolle', 'Minutes of meetings', 1, 1, 1, 0, 0);
INSERT INTO query_format SELECT id, 0, 'Full text', '' FROM archive;
INSERT INTO query_format SELECT id, 1, 'Title', 'title' FROM archive;
INSERT INTO query_format SELECT id, 2, 'People', 'author customer' FROM archive WHERE channel_id IN (1, 2);
INSERT INTO query_format SELECT id, 3, 'Order data', 'customer date amount' FROM archive WHERE channel_id = 2;
INSERT INTO field VALUES (10, 'title', 'Title', 0), (11, 'author', 'Author', 0), (12, 'customer', 'Customer', 0),
  (13, 'type', 'Type', 0), (14, 'date', 'Date', 0x400), (15, 'amount', 'Amount', 0x200);
INSERT INTO layout_column VALUES ('1', 0, 10), ('1', 1, 11), ('1', 2, 14), ('2', 0, 12), ('2', 1, 10), ('2', 2, 14),
  ('2', 3, 15), ('3', 0, 10);
INSERT INTO next_document VALUES (1001);
)sql";

struct Kind {
  std::string_view type;
  std::string_view subject;
  bool hasAmount;
};

// One for each archive, in order.
constexpr std::array<Kind, 9> kKinds = {{{"Letter", "Enquiry about", false},
                                         {"Letter", "Reply about", false},
                                         {"Fax", "Fax about", false},
                                         {"Invoice", "Invoice for", true},
                                         {"Order", "Order of", true},
                                         {"Contract", "Frame contract for", true},
                                         {"Drawing", "Zeichnung", false},
                                         {"Report", "Prüfbericht", false},
                                         {"Minutes", "Besprechung über", false}}};
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

std::string Format(const char* pattern, std::size_t first, std::size_t second, std::size_t third) {
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), pattern, first, second, third);
  return buffer.data();
}

void AddDocument(Statement& insert, SampleDetails& details, Sequence& sequence, std::size_t index) {
  const std::size_t archive = index % kKinds.size();
  const Kind& kind = kKinds[archive];
  SampleDocument document{};
  document.index = index;
  document.id = static_cast<std::int64_t>(1001 + index);
  document.archiveId = static_cast<std::int64_t>(archive + 1);
  document.thing = sequence.Pick(kThings);
  document.title = std::string(kind.subject) + " " + document.thing;
  document.year = 2023 + sequence.Below(4);
  document.month = 1 + sequence.Below(12);
  document.day = 1 + sequence.Below(28);
  const std::size_t euros = 10 + sequence.Below(9990);
  const std::size_t cents = sequence.Below(100);
  if (kind.hasAmount) document.amount = Format("%zu,%02zu", euros, cents, 0);
  std::string text;
  for (std::string& sentence : document.sentences) {
    sentence = sequence.Pick(kSentences);
    text.append(text.empty() ? "" : "\n").append(sentence);
  }
  document.version = static_cast<std::int64_t>(1 + sequence.Below(3));
  document.author = sequence.Pick(kAuthors);
  document.customer = sequence.Pick(kCustomers);

  insert.Bind(1, document.id).Bind(2, document.archiveId).Bind(3, document.version);
  insert.BindUtf8(4, Format("%04zu-%02zu-%02zu", document.year, document.month, document.day));
  insert.BindUtf8(5, document.title).BindUtf8(6, document.author).BindUtf8(7, document.customer);
  insert.BindUtf8(8, kind.type).BindUtf8(9, SampleDate(document.day, document.month, document.year));
  insert.BindUtf8(10, document.amount).BindUtf8(11, text).Run();
  details.Add(document);
}

void Fill(Database& database, int documentCount) {
  Transaction transaction(database);
  database.Execute(kSchema);
  database.Execute(kStructure);
  database.Execute(kSampleMasks);
  Statement insert(database, "INSERT INTO document VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  SampleDetails details(database);
  Sequence sequence;
  for (int index = 0; index < documentCount; ++index) {
    AddDocument(insert, details, sequence, static_cast<std::size_t>(index));
  }
  AddSampleOrders(database);
  database.Execute("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  transaction.Commit();
}

std::int64_t QueryNumber(Database& database, std::string_view sql) {
  Statement query(database, sql);
  return query.Next() ? query.Number(0) : 0;
}

}  // namespace

Database OpenArchive(const std::string& file, int documentCount) {
  Database database(file);
  if (QueryNumber(database, "PRAGMA user_version") == kSchemaVersion &&
      QueryNumber(database, "SELECT count(*) FROM sqlite_master WHERE name = 'document_text'") == 1) {
    return database;
  }
  if (QueryNumber(database, "SELECT count(*) FROM sqlite_master") != 0) {
    throw ServerError("'" + file + "' is a database, but no development archive of this version");
  }
  Fill(database, documentCount);
  return database;
}

}  // namespace oxaqrycln::devserver
