#include "tools/devserver/commands/hit_list.h"

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

constexpr const char* kDefaultLayout = "1";

struct Column {
  std::int64_t id;
  std::string name;
  std::string title;
  std::int64_t flags;
};

std::vector<Column> ReadColumns(Statement& query) {
  std::vector<Column> columns;
  while (query.Next()) columns.push_back({query.Number(0), query.Text(1), query.Text(2), query.Number(3)});
  return columns;
}

std::vector<Column> LayoutColumns(Database& database, const std::string& layoutId, const std::string& fieldId) {
  Statement layout(database,
                   "SELECT id, name, title, flags FROM layout_column JOIN field ON id = field_id "
                   "WHERE layout_id = ? ORDER BY position");
  layout.Bind(1, std::string_view(layoutId.empty() ? kDefaultLayout : layoutId));
  std::vector<Column> columns = ReadColumns(layout);
  if (columns.empty()) throw ServerError("There is no layout '" + Printable(layoutId) + "'");
  if (fieldId.empty()) return columns;

  Statement field(database, "SELECT id, name, title, flags FROM field WHERE CAST(id AS TEXT) = ?");
  field.Bind(1, std::string_view(fieldId));
  const std::vector<Column> extra = ReadColumns(field);
  if (extra.empty()) throw ServerError("There is no layout field '" + Printable(fieldId) + "'");
  const auto isExtra = [&](const Column& column) { return column.id == extra.front().id; };
  if (std::none_of(columns.begin(), columns.end(), isExtra)) columns.push_back(extra.front());
  return columns;
}

// Where a query searches: the archives, as a list of their numbers, and the columns of the full-text index ("": all).
struct Scope {
  std::string archiveIds;
  std::string fields;
};

Scope FindScope(Database& database, const std::string& format, const FolderRights& rights) {
  Scope scope;
  bool formatKnown = false;
  Statement query(database,
                  "SELECT DISTINCT archive.id, channel.name, archive.name, CASE ?1 WHEN '' THEN '' ELSE fields END "
                  "FROM archive JOIN channel ON channel.id = channel_id JOIN query_format ON archive_id = archive.id "
                  "WHERE ?1 = '' OR query_format.name = ?1");
  query.Bind(1, std::string_view(format));
  while (query.Next()) {
    formatKnown = true;
    scope.fields = query.Text(3);
    if (!rights.Allows(query.Text(1), query.Text(2))) continue;
    scope.archiveIds.append(scope.archiveIds.empty() ? "" : ",").append(std::to_string(query.Number(0)));
  }
  if (!formatKnown) throw ServerError("There is no query format '" + Printable(format) + "'");
  return scope;
}

// The condition of a query; parameter 1 is the full-text expression, unless that is empty. The archive numbers are
// the database's own.
std::string Condition(const Scope& scope, const std::string& expression) {
  std::string archives =
      " FROM document JOIN archive ON archive.id = archive_id "
      "JOIN channel ON channel.id = channel_id WHERE archive_id IN (" +
      scope.archiveIds + ")";
  if (expression.empty()) return archives;
  return archives + " AND document.id IN (SELECT rowid FROM document_text WHERE document_text MATCH ?1)";
}

struct Heading {
  std::string layout;
  std::string flags;
  std::string titles;
};

Heading MakeHeading(const std::vector<Column>& columns) {
  Heading heading{"", "^0^,^0^,^0^", "^Reference^,^Document^,^Version^"};
  for (const Column& column : columns) {
    heading.layout.append(heading.layout.empty() ? "" : ";").append(std::to_string(column.id));
    heading.layout.append("=").append(column.title);
    heading.flags.append(",").append(Field(std::to_string(column.flags)));
    heading.titles.append(",").append(Field(column.title));
  }
  return heading;
}

std::string Rows(Database& database, const std::string& condition, const std::string& expression,
                 const std::vector<Column>& columns, std::int64_t maxLines) {
  std::string sql = "SELECT '$(#' || channel.name || ')\\' || archive.name, document.id, version";
  for (const Column& column : columns) sql += ", document.\"" + column.name + "\"";
  sql += condition + " ORDER BY sort_date DESC, document.id LIMIT ?2";
  Statement query(database, sql);
  if (!expression.empty()) query.Bind(1, std::string_view(expression));
  query.Bind(2, maxLines == 0 ? -1 : maxLines);
  std::string rows;
  while (query.Next()) {
    for (int column = 0; column < static_cast<int>(columns.size()) + 3; ++column) {
      rows.append(column == 0 ? "" : ",").append(Field(query.Text(column)));
    }
    rows += "\r\n";
  }
  return rows;
}

}  // namespace

Reply QueryArchive(const Call& call) {
  Database& database = call.database;
  const Parameters parameters = call.parameters;
  std::string expression = ParseQuery(parameters[0]);
  const std::int64_t maxLines = ParseLimit("Max lines", parameters[1]);
  const std::int64_t queryMax = ParseLimit("Query max", parameters[2]);
  const std::vector<Column> columns = LayoutColumns(database, parameters[6], parameters[3]);
  const Scope scope = FindScope(database, parameters[4], FolderRights(parameters[5]));
  if (!expression.empty() && !scope.fields.empty()) expression = "{" + scope.fields + "} : (" + expression + ")";

  const std::string condition = Condition(scope, expression);
  Statement count(database, "SELECT count(*), max(scans)" + condition);
  if (!expression.empty()) count.Bind(1, std::string_view(expression));
  count.Next();
  const std::int64_t total = count.Number(0);
  if (queryMax > 0 && total > queryMax) {
    throw ServerError("The query has " + std::to_string(total) + " hits, more than the " + std::to_string(queryMax) +
                      " allowed");
  }
  const Heading heading = MakeHeading(columns);
  return std::to_string(total) + "\r\n" + heading.layout + "\r\n" + (count.Number(1) == 1 ? "1" : "0") + "\r\n" +
         heading.flags + "\r\n" + heading.titles + "\r\n" + Rows(database, condition, expression, columns, maxLines);
}

}  // namespace oxaqrycln::devserver
