#include "archive/sort_key.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/archive/hit_lines.h"
#include "tests/support/page.h"
#include "values/text_parts.h"

namespace oxaqrycln::testing {
namespace {

TEST(SortKeys, OrderTheirColumn) {
  struct Case {
    const char* name;
    const char* flag;
    std::string texts;  // ascending, "|" between them and "=" between equal ones
  };
  const std::string nul(1, '\0');
  const std::vector<Case> cases{
      {"text by upper-case code", kText, "| b|10|9|a=A|B|b~=B~|_"},
      {"text of the code page", kText, "Z|\x9A=\x8A|\xFF=\x9F|\xE4=\xC4|\xF7"},
      {"text, alike in its first characters", kText, "invoice|invoice 1=INVOICE 1|invoice 12|Invoices|INVOICES 1"},
      {"text with NUL", kText, "a|A" + nul + "|a" + nul + nul + "|a" + nul + "b|abcdefg|ABCDEFG" + nul},
      {"dates in every form", kDate, "|soon|1.2.2003=01.02.2003=2003-02-01=2003-2-1=2/1/2003=02/01/2003|2.1.2004"},
      {"dates by the calendar", kDate, "31.12.1999|1/1/2000|2000-01-02|1.2.2000|01.01.2001|9999-12-31"},
      {"numbers of either sign", kNumber, "|none|-10|-9,5|-9|0=-0=+0,00|9|10"},
      {"zeros that do not count", kNumber, "0.05=0,050|0,5=000.50|5=5.0=005,00=+5= 5\t|5,01|50"},
      {"whole numbers of twenty digits", kNumber,
       "-12345678901234567891|-12345678901234567890|12345678901234567890=12345678901234567890,0"
       "|12345678901234567890,1=12345678901234567890.10|12345678901234567891|99999999999999999999"
       "|100000000000000000000"},
      {"fractions of twenty digits", kNumber,
       "-1234567890,1234567891|-1234567890.123456789|1,0000000000000000001|1,0000000000000000002|123456789"
       "|123456789,01|123456789,1|1234567890.123456789|1234567890,1234567891"},
      {"both flags are a date", "1536", "10|9|1.1.2000"},
      {"other bits beside the flag", "4609", "9|10"},
      {"a flag in another form of a number", " 5.12e2 ", "9|10"},
      {"flags that are no number", "&H200", "10|9"},
      {"no flags", "", "10|9"},
  };
  std::mt19937 random(4);
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    std::map<std::string, int> ranks;
    Texts rows;
    int rank = 0;
    for (const std::string_view group : Split(test.texts, '|')) {
      for (const std::string_view text : group.empty() ? std::vector{group} : Split(group, '=')) {
        rows.push_back(Row("0", {std::string(text)}));
        ranks[rows.back()] = rank;
      }
      ++rank;
    }
    for (int round = 0; round < 20; ++round) {
      std::shuffle(rows.begin(), rows.end(), random);
      Texts sorted = rows;
      std::ranges::stable_sort(sorted, {}, [&](const std::string& row) { return ranks.at(row); });
      ASSERT_EQ(Ascending(test.flag, rows), sorted);
    }
  }
}

TEST(SortKeys, PutOtherTextsBeforeDatesAndNumbers) {
  struct Case {
    const char* name;
    const char* flag;
    bool isValue;
    std::string texts;  // "|" between them
  };
  for (const Case& test : {
           Case{"dates", kDate, true, "29.02.2024|2000-02-29|30.04.2024|12/31/2024|1/2/2024|9999-12-31"},
           Case{"days that do not exist", kDate, false,
                "29.02.2023|1900-02-29|31.04.2024|31/12/2024|1.13.2024|0.1.2024"},
           Case{"other lengths", kDate, false, "1.1.24|24-1-1|1.1.02024|001.1.2024|2024-001-01|1.1.|1..2024|20240101"},
           Case{"other forms", kDate, false, "2024.01.01|1-1-2024|1.1/2024|+1.1.2024|99999999999.1.2024|1.1.2024.|."},
           Case{"more than a date", kDate, false, "1.1.2024 08:00|2024-01-01T08:00:00| 1.1.2024|1.1.2024 "},
           Case{"numbers", kNumber, true, "1234567|-1|+1|1,5|1.5|\t 1 |-0.5|00"},
           Case{"several separators", kNumber, false, "1.234,5|1,2,3|1..2|1 000"},
           Case{"a separator without digits beside it", kNumber, false, ",5|5,|-,5|.|5, "},
           Case{"signs in other places", kNumber, false, "- 1|1-|--1|+|1,-5"},
           Case{"other characters", kNumber, false, "1e3|0x10|1 EUR|\xB2|1\xA0|\r| |1,5a"},
       }) {
    // Less than all other values.
    const std::string least = Row("2", {test.flag == kDate ? "01.01.0000" : "-" + std::string(40, '9')});
    for (const std::string_view text : Split(test.texts, '|')) {
      const std::string one = Row("1", {std::string(text)});
      const Texts expected = test.isValue ? Texts{least, one} : Texts{one, least};
      EXPECT_EQ(Ascending(test.flag, {one, least}), expected) << test.name << ": " << text;
      EXPECT_EQ(Ascending(test.flag, {least, one}), expected) << test.name << ": " << text;
    }
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
