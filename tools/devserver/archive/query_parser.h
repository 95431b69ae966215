// query_parser.h - translates the query language of the development archive into a full-text expression of SQLite.
// Words and values are always quoted, so nothing that a client sends is interpreted as SQLite's syntax.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_QUERY_PARSER_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_QUERY_PARSER_H_

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace oxaqrycln::devserver {

// A field, which a query names by its name or by its ID if it has one.
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

// The language, from the loosest binding to the tightest:
//
//   query   = group { "OR" group }
//   group   = [ "NOT" ] term { [ "AND" ] [ "NOT" ] term }        at least one term without NOT
//   term    = "(" query ")" | [ field ":" ] ( word [ "*" ] | '"' words '"' [ "*" ] | "(" query ")" )
//   field   = the name or the ID of one of the given fields
//
// Operators are in capitals. "*" alone finds every document and yields the empty expression. Raises ServerError, with a
// text that begins "Query: ", for anything else, and for a query of more than 4096 bytes or 200 words, which would
// delay other clients.
std::string ParseQuery(std::string_view query, std::span<const QueryField> fields = kDocumentFields);

// The expression for marking hits in the found documents: it matches each value that is not excluded. "" when there is
// none, as for "*" and for the empty query. Raises ServerError as ParseQuery does.
std::string MarkingExpression(std::string_view query);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_QUERY_PARSER_H_
