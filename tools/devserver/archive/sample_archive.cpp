#include "tools/devserver/archive/sample_archive.h"

#include "tools/devserver/archive/sample_documents.h"
#include "tools/devserver/archive/schema.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

// The version of schema.sql, kept in the database's user version.
constexpr int kSchemaVersion = 4;

void Fill(Database& database, int documentCount) {
  Transaction transaction(database);
  database.exec(kSchema);
  database.exec(kSampleStructure);
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
