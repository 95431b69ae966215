#include "tools/devserver/archive/sample_archive.h"

#include "tools/devserver/archive/sample_documents.h"
#include "tools/devserver/archive/sample_orders.h"
#include "tools/devserver/archive/schema.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

// The version of schema.sql, kept in the database's user version.
constexpr int kSchemaVersion = 3;

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

void Fill(Database& database, int documentCount) {
  Transaction transaction(database);
  database.exec(kSchema);
  database.exec(kStructure);
  AddSampleDocuments(database, documentCount);
  AddSampleOrders(database);
  database.exec("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  transaction.commit();
}

}  // namespace

Database OpenArchive(const std::string& file, int documentCount) {
  try {
    Database database = OpenDatabase(file);
    if (database.execAndGet("PRAGMA user_version").getInt() == kSchemaVersion &&
        database.tableExists("document_text")) {
      return database;
    }
    if (database.execAndGet("SELECT count(*) FROM sqlite_master").getInt() != 0) {
      throw ServerError("'" + file + "' is a database, but not a development archive of this version");
    }
    Fill(database, documentCount);
    return database;
  } catch (const SQLite::Exception& error) {
    throw ServerError("Database '" + file + "': " + error.what());
  }
}

}  // namespace oxaqrycln::devserver
