#include "tools/devserver/archive/query_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/tools/devserver/wire_client.h"
#include "tools/devserver/archive/sample_archive.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

// Three documents with the texts "red apple", "red pear" and "green apple pie"; hits are their numbers.
std::string Hits(const std::string& query) {
  Database database = OpenDatabase("");
  database.exec(
      "CREATE VIRTUAL TABLE d USING fts5 (title, author, customer, type, date, amount, text);"
      "INSERT INTO d (rowid, title, text) VALUES (1, 'One', 'red apple'), (2, 'Two', 'red pear'),"
      "(3, 'Three', 'green apple pie')");
  Statement statement(database, "SELECT rowid FROM d WHERE d MATCH ? ORDER BY rowid", ParseQuery(query));
  std::string hits;
  while (statement.executeStep()) hits += statement.Text(0);
  return hits;
}

TEST(QueryParser, FindsWhatTheQueryMeans) {
  const char* const cases[][2] = {
      {"red", "12"},
      {"RED", "12"},
      {"red apple", "1"},
      {"red AND apple", "1"},
      {"pear OR pie", "23"},
      {"red apple OR pie", "13"},
      {"red (apple OR pear)", "12"},
      {"apple NOT red", "3"},
      {"NOT red apple", "3"},
      {"apple AND NOT (red OR pie)", ""},
      {"\"apple pie\"", "3"},
      {"\"pie apple\"", ""},
      {"app*", "13"},
      {"\"green app\"*", "3"},
      {"title:two", "2"},
      {"Title:red", ""},
      {"text:(red NOT pear)", "1"},
      {"title:t* text:red", "2"},
      {"10:two", "2"},
      {"16:(red NOT pear)", "1"},
      {"10:\"t\"* AND 16:red", "2"},
      {"and", ""},
      // Syntax of SQLite is plain text here.
      {"red-apple", "1"},
      {"{title}", ""},
      {"NEAR pear", ""},
      {"\"apple + pie\"", "3"},
      {"pear^", "2"},
      {"'pear';--", "2"},
  };
  for (const auto& [query, hits] : cases) EXPECT_EQ(Hits(query), hits) << query;
}

TEST(QueryParser, ReportsErrors) {
  const std::pair<std::string, const char*> cases[] = {
      {" ", "empty"},
      {"red AND", "missing at the end"},
      {"AND red", "AND needs a term"},
      {"OR red", "missing before OR"},
      {"red OR OR pie", "missing before OR"},
      {"red NOT", "missing at the end"},
      {"NOT red", "exclude from"},
      {"(red", "')' is missing"},
      {"red)", "')' without '('"},
      {"()", "missing before ')'"},
      {"\"red", "closing '\"'"},
      {"colour:red", "no field 'colour'"},
      {"017:red", "no field '017'"},
      {"17:red", "no field '17'"},
      {"title:", "has no value"},
      {"title: red", "has no value"},
      {"--- red", "no letter or digit"},
      {"\"\"", "no letter or digit"},
      {std::string("red\0pie", 7), "control character"},
      {std::string(33, '(') + "red" + std::string(33, ')'), "nested parentheses"},
      {Repeat("a ", 201), "more than 200 words"},
      {'"' + Repeat("a-b ", 100) + "a\"", "more than 200 words"},
      {"a" + std::string(200, '\xB5'), "more than 200 words"},
      {std::string(4095, 'a') + "  ", "4097 bytes, more than the 4096 allowed"},
  };
  for (const auto& [query, text] : cases) {
    try {
      ADD_FAILURE() << query << " gave " << ParseQuery(query);
    } catch (const ServerError& error) {
      EXPECT_THAT(error.what(), ::testing::AllOf(::testing::StartsWith("Query: "), ::testing::HasSubstr(text)))
          << query;
    }
  }
}

TEST(QueryParser, AcceptsQueriesAtItsLimits) {
  EXPECT_EQ(Hits(std::string(32, '(') + "red" + std::string(32, ')') + Repeat(" OR pie", 199)), "123");
  EXPECT_EQ(Hits("red OR " + std::string(4089, 'a')), "12");
}

}  // namespace
}  // namespace oxaqrycln::devserver
