// query_parser.h - turns the query language of the development archive into a full-text expression of SQLite.
// Words and values always reach SQLite quoted, so nothing a client sends is read as its syntax.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_QUERY_PARSER_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_QUERY_PARSER_H_

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace oxaqrycln::devserver {

// A field that a query may name, by its name or, where it has one, by its ID.
struct QueryField {
  std::string_view name;
  std::string_view id = {};
};
inline constexpr std::array<QueryField, 7> kDocumentFields = {{{"title", "10"},
                                                               {"author", "11"},
                                                               {"customer", "12"},
                                                               {"type", "13"},
                                                               {"date", "14"},
                                                               {"amount", "15"},
                                                               {"text", "16"}}};

// The language, loosest first:
//
//   query   = group { "OR" group }
//   group   = [ "NOT" ] term { [ "AND" ] [ "NOT" ] term }        at least one term without NOT
//   term    = "(" query ")" | [ field ":" ] ( word [ "*" ] | '"' words '"' [ "*" ] | "(" query ")" )
//   field   = the name or the ID of one of the given fields
//
// Operators are upper-case. "*" alone is every document and gives the empty expression. Raises ServerError, with a
// text that begins "Query: ", for anything else, and for a query of more than 4096 bytes or 200 words, which would keep
// the other clients waiting.
std::string ParseQuery(std::string_view query, std::span<const QueryField> fields = kDocumentFields);

// What is to be marked in a text that such a query of documents has found: an expression that matches each of its
// values that are not excluded. "" when that is nothing, as for "*" and for the empty query. Raises ServerError as
// ParseQuery does.
std::string MarkingExpression(std::string_view query);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_QUERY_PARSER_H_
