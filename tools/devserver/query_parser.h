// query_parser.h - turns the query language of the development archive into a full-text expression of SQLite.
// Words and values always reach SQLite quoted, so nothing a client sends is read as its syntax.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_QUERY_PARSER_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_QUERY_PARSER_H_

#include <string>
#include <string_view>

namespace oxaqrycln::devserver {

// The language, loosest first:
//
//   query   = group { "OR" group }
//   group   = [ "NOT" ] term { [ "AND" ] [ "NOT" ] term }        at least one term without NOT
//   term    = "(" query ")" | [ field ":" ] ( word [ "*" ] | '"' words '"' [ "*" ] | "(" query ")" )
//   field   = title | author | customer | type | date | amount | text, or the field ID, 10 to 16 in this order
//
// Operators are upper-case. "*" alone is every document and gives the empty expression. Raises ServerError, with a
// text that begins "Query: ", for anything else, and for a query of more than 4096 bytes or 200 words, which would keep
// the other clients waiting.
std::string ParseQuery(std::string_view query);

// What is to be marked in a text that such a query has found: an expression that matches each of its values that are
// not excluded. "" when that is nothing, as for "*" and for the empty query. Raises ServerError as ParseQuery does.
std::string MarkingExpression(std::string_view query);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_QUERY_PARSER_H_
