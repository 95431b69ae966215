#include "tools/devserver/archive/hit_marks.h"

#include <algorithm>

#include "tools/devserver/archive/query_parser.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::size_t kLongestMark = 256;
constexpr std::size_t kMostByteCount = 64U << 20U;
// The marks inside SQLite; the texts of segments hold no control characters.
constexpr char kOn = '\x01';
constexpr char kOff = '\x02';

// Puts kOn and kOff around the hits in the texts. Each text is searched as the column of its field, so that a query for
// one field marks nothing in another.
void FindHits(Database& database, const std::vector<Segment>& segments, const std::string& expression,
              std::vector<std::string>& texts) {
  database.exec(
      "CREATE VIRTUAL TABLE IF NOT EXISTS temp.marked USING fts5 (title, author, customer, type, date, amount, text, "
      "tokenize = 'unicode61 remove_diacritics 2')");
  database.exec("DELETE FROM temp.marked");
  for (std::size_t index = 0; index < segments.size(); ++index) {
    if (segments[index].text.empty()) continue;
    const std::string column = ColumnOfField(segments[index].fieldId);
    Statement(database, "INSERT INTO temp.marked (rowid, " + column + ") VALUES (?, ?)")
        .Run(static_cast<std::int64_t>(index), segments[index].text);
  }
  std::string sql = "SELECT rowid";
  for (int column = 0; column < 7; ++column) {
    sql += (column == 0 ? ", " : " || ") + ("coalesce(highlight(marked, " + std::to_string(column)) +
           ", char(1), char(2)), '')";
  }
  Statement query(database, sql + " FROM temp.marked WHERE marked MATCH ?", expression);
  while (query.executeStep()) texts[static_cast<std::size_t>(query.Number(0))] = query.Text(1);
}

}  // namespace

std::vector<MarkedText> MarkHits(Database& database, const std::vector<Segment>& segments, const std::string& query,
                                 const MarkTexts& marks) {
  if (std::max({marks.on.size(), marks.off.size(), marks.blank.size()}) > kLongestMark) {
    throw ServerError("A mark is longer than " + std::to_string(kLongestMark) + " characters");
  }
  std::vector<std::string> texts;
  for (const Segment& segment : segments) texts.push_back(segment.text);
  const std::string expression = MarkingExpression(query);
  if (!expression.empty()) FindHits(database, segments, expression, texts);

  std::vector<MarkedText> marked;
  std::size_t byteCount = 0;
  for (const std::string& text : texts) {
    MarkedText result{"", std::count(text.begin(), text.end(), kOn)};
    for (const char character : text) {
      if (character == kOn) {
        result.text += marks.on;
      } else if (character == kOff) {
        result.text += marks.off;
      } else if (character == ' ' && !marks.blank.empty()) {
        result.text += marks.blank;
      } else {
        result.text += character;
      }
      if (byteCount + result.text.size() > kMostByteCount) throw ServerError("The marked texts are too long");
    }
    byteCount += result.text.size();
    marked.push_back(std::move(result));
  }
  return marked;
}

}  // namespace oxaqrycln::devserver
