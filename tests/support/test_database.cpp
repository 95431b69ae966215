#include "tests/support/test_database.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "component/objects.h"
#include "values/text_parts.h"

namespace oxaqrycln::testing {
namespace {

std::string ReadAll(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::shared_ptr<Connection> Open(const std::string& connectionString) {
  auto connection = std::dynamic_pointer_cast<Connection>(CreateObject("ADODB.Connection"));
  connection->Open(connectionString);
  return connection;
}

// The connection string of the server's file, whose end is the name of a database, for another one.
std::string Postgres(const std::string& database) {
  const std::string string = ReadAll(OXAQRYCLN_POSTGRES);
  return string.substr(0, string.rfind('=') + 1) + database;
}

}  // namespace

std::vector<Kind> Kinds() {
  if (std::filesystem::path::preferred_separator != '/') return {Kind::Postgres};
  return {Kind::Sqlite, Kind::Postgres};
}

bool IsThere(Kind kind) { return kind == Kind::Sqlite || std::ifstream(OXAQRYCLN_POSTGRES).good(); }

TestDatabase::TestDatabase(Kind kind, bool hasTables, const std::string& statements) : kind_(kind) {
  if (kind == Kind::Sqlite) {
    connectionString_ = "Driver={SQLite3};Database=" + directory_.File("users.sqlite");
  } else {
    name_ = std::filesystem::path(directory_.path()).filename().string();
    std::ranges::replace(name_, '-', '_');
    Open(ReadAll(OXAQRYCLN_POSTGRES))->Execute("CREATE DATABASE " + name_);
    connectionString_ = Postgres(name_);
  }
  std::string schema;
  const std::string text = hasTables ? ReadAll(OXAQRYCLN_SCHEMA) : "";
  for (const std::string_view line : Split(text, '\n')) {
    if (!line.starts_with("--")) schema.append(line).append("\n");
  }
  Run(schema + statements);
}

TestDatabase::~TestDatabase() {
  if (kind_ == Kind::Postgres) Open(ReadAll(OXAQRYCLN_POSTGRES))->Execute("DROP DATABASE " + name_ + " WITH (FORCE)");
}

std::shared_ptr<Connection> TestDatabase::Connect() const { return Open(connectionString_); }

Variant TestDatabase::Run(const std::string& statements) const {
  const auto connection = Connect();
  Variant first;
  for (const std::string_view statement : Split(statements, ';')) {
    if (statement.find_first_not_of(" \n") == std::string_view::npos) continue;
    const auto rows = connection->Execute(statement);
    first = rows->EndOfRows() ? Variant() : rows->Field(0);
  }
  return first;
}

}  // namespace oxaqrycln::testing
