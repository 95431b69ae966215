#include "tools/devserver/commands/handlers.h"

#include <algorithm>
#include <vector>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/archive/folder_rights.h"
#include "tools/devserver/archive/query_parser.h"
#include "tools/devserver/protocol/answer_text.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {
namespace {

struct Column {
  std::int64_t id;
  std::string name;
  std::string title;
  std::int64_t flags;
};

std::vector<Column> ReadColumns(Statement query) {
  std::vector<Column> columns;
  while (query.executeStep()) columns.push_back({query.Number(0), query.Text(1), query.Text(2), query.Number(3)});
  return columns;
}

std::vector<Column> LayoutColumns(Database& database, const std::string& layoutId, const std::string& fieldId) {
  std::vector<Column> columns = ReadColumns({database,
                                             "SELECT id, name, title, flags FROM layout_column JOIN field "
                                             "ON id = field_id WHERE layout_id = ? ORDER BY position",
                                             layoutId.empty() ? "1" : layoutId});
  if (columns.empty()) throw ServerError("There is no layout '" + Printable(layoutId) + "'");
  if (fieldId.empty()) return columns;

  const std::vector<Column> extra =
      ReadColumns({database, "SELECT id, name, title, flags FROM field WHERE CAST(id AS TEXT) = ?", fieldId});
  if (extra.empty()) throw ServerError("There is no layout field '" + Printable(fieldId) + "'");
  if (std::ranges::count(columns, extra.front().id, &Column::id) == 0) columns.push_back(extra.front());
  return columns;
}

// Where a query searches: the numbers of the archives, and the columns of the full-text index ("": all).
struct Scope {
  std::vector<std::string> archiveIds;
  std::string fields;
};

Scope FindScope(Database& database, const std::string& format, const FolderRights& rights) {
  Scope scope;
  bool formatKnown = false;
  Statement query(database,
                  "SELECT DISTINCT archive.id, channel.name, archive.name, CASE ?1 WHEN '' THEN '' ELSE fields END "
                  "FROM archive JOIN channel ON channel.id = channel_id JOIN query_format ON archive_id = archive.id "
                  "WHERE ?1 = '' OR query_format.name = ?1",
                  format);
  while (query.executeStep()) {
    formatKnown = true;
    scope.fields = query.Text(3);
    if (!rights.Allows(query.Text(1), query.Text(2))) continue;
    scope.archiveIds.push_back(query.Text(0));
  }
  if (!formatKnown) throw ServerError("There is no query format '" + Printable(format) + "'");
  return scope;
}

// The part of a statement that finds the documents of the scope; its parameter 1 is the full-text expression. The
// archive numbers come from the database.
std::string Matches(const Scope& scope, const std::string& expression) {
  return " FROM document JOIN archive ON archive.id = archive_id JOIN channel ON channel.id = channel_id "
         "WHERE archive_id IN (" +
         Join(scope.archiveIds, ",") + ") AND " +
         (expression.empty() ? "?1 = ''"
                             : "document.id IN (SELECT rowid FROM document_text WHERE document_text MATCH ?1)");
}

// The lines of an answer before its rows: layout, whether a multi-page TIFF is on offer, flags and titles of the
// columns.
std::string Heading(const std::vector<Column>& columns, bool hasScans) {
  std::vector<std::string> layout;
  std::vector<std::string> flags(3, "0");
  std::vector<std::string> titles = {"Reference", "Document", "Version"};
  for (const Column& column : columns) {
    layout.push_back(std::to_string(column.id) + "=" + column.title);
    flags.push_back(std::to_string(column.flags));
    titles.push_back(column.title);
  }
  return Join(layout, ";") + (hasScans ? "\r\n1\r\n" : "\r\n0\r\n") + Record(flags) + "\r\n" + Record(titles) + "\r\n";
}

std::string Rows(Database& database, const std::string& matches, const std::string& expression,
                 const std::vector<Column>& columns, std::int64_t maxLines) {
  std::string sql = "SELECT '$(#' || channel.name || ')\\' || archive.name, document.id, version";
  for (const Column& column : columns) sql += ", document.\"" + column.name + "\"";
  Statement query(database, sql + matches + " ORDER BY sort_date DESC, document.id LIMIT ?2", expression,
                  maxLines == 0 ? -1 : maxLines);
  std::string rows;
  while (query.executeStep()) rows += Record(query.Texts()) + "\r\n";
  return rows;
}

}  // namespace

Reply QueryArchive(const Call& call) {
  Database& database = call.database;
  const std::span<const std::string> parameters = call.parameters;
  std::string expression = ParseQuery(parameters[0]);
  const std::int64_t maxLines = ParseLimit("Max lines", parameters[1]);
  const std::int64_t queryMax = ParseLimit("Query max", parameters[2]);
  const std::vector<Column> columns = LayoutColumns(database, parameters[6], parameters[3]);
  const Scope scope = FindScope(database, parameters[4], FolderRights(parameters[5]));
  if (!expression.empty() && !scope.fields.empty()) expression = "{" + scope.fields + "} : (" + expression + ")";

  const std::string matches = Matches(scope, expression);
  Statement count(database, "SELECT count(*), max(scans)" + matches, expression);
  count.executeStep();
  const std::int64_t total = count.Number(0);
  if (queryMax > 0 && total > queryMax) {
    throw ServerError("The query has " + std::to_string(total) + " hits, more than the " + std::to_string(queryMax) +
                      " allowed");
  }
  return std::to_string(total) + "\r\n" + Heading(columns, count.Number(1) == 1) +
         Rows(database, matches, expression, columns, maxLines);
}

}  // namespace oxaqrycln::devserver
