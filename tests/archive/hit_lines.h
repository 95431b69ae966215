// hit_lines.h - hit lists as a page holds them, for the tests that sort them.
#ifndef OXAQRYCLN_TESTS_ARCHIVE_HIT_LINES_H_
#define OXAQRYCLN_TESTS_ARCHIVE_HIT_LINES_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "component/clsQuery.h"

namespace oxaqrycln::testing {

using Texts = std::vector<std::string>;

inline constexpr const char* kText = "0";
inline constexpr const char* kDate = "1024";
inline constexpr const char* kNumber = "512";

// Three fields and columns behind them.
inline std::string Fields(std::string line, const Texts& columns) {
  for (const std::string& column : columns) line += ",^" + column + "^";
  return line;
}
inline std::string Row(const std::string& id, const Texts& columns) {
  return Fields("^$(#Mail)\\Inbox^,^" + id + "^,^1^", columns);
}
// The flags of the columns, their titles, the rows.
inline std::string Lines(const Texts& flags, const Texts& rows) {
  std::string lines = Fields("^0^,^0^,^0^", flags) + "\r\n";
  lines += Fields("^0^,^0^,^0^", Texts(flags.size(), "title")) + "\r\n";
  for (const std::string& row : rows) lines += row + "\r\n";
  return lines;
}

// The rows of TELOSortHitlist2Next behind the titles.
inline Texts GivenRows(clsQuery& query, std::size_t count) {
  Texts rows;
  query.TELOSortHitlist2Next();
  for (std::size_t i = 0; i < count; ++i) rows.push_back(query.TELOSortHitlist2Next());
  EXPECT_EQ(query.TELOSortHitlist2Next(), "");
  return rows;
}

// The rows in ascending order of the first column.
inline Texts Ascending(const std::string& flag, const Texts& rows) {
  clsQuery query;
  // A list without hits leaves the direction "descending", which the next sort turns round.
  EXPECT_EQ(query.TELOSortHitlist2Init(Lines({flag}, {}), 1), Variant::Long(1));
  EXPECT_EQ(query.TELOSortHitlist2Init(Lines({flag}, rows), 1), Variant::Long(static_cast<int>(rows.size()) + 1));
  return GivenRows(query, rows.size());
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_ARCHIVE_HIT_LINES_H_
