#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "tests/archive/hit_lines.h"
#include "tests/support/page.h"
#include "values/code_page.h"

namespace oxaqrycln::testing {
namespace {

using ::testing::ElementsAre;

// The document ids of the next hits that a page reads.
Texts NextIds(clsQuery& query, std::size_t most = 1000) {
  Texts ids;
  Variant id;
  while (ids.size() < most && !query.TELOSortHitlistNext(nullptr, nullptr, &id).empty()) ids.push_back(id.ToText());
  return ids;
}

// The same from the titles on.
Texts Walk(clsQuery& query, std::size_t most = 1000) {
  Variant channel;
  query.TELOSortHitlistNext(&channel);
  EXPECT_EQ(channel, Variant("Channel"));
  return NextIds(query, most);
}

void SearchAll(clsQuery& query) { query.TELOQueryArchiveInit("q", 0, 0, "", ""); }

// What a server answers to a query.
std::string HitAnswer(const Texts& flags, const Texts& rows) {
  const std::string lines = Lines(flags, rows);
  return Framed("Status: OK\r\n" + std::to_string(rows.size()) + "\r\n\r\n0\r\n" + lines);
}

struct Hit {
  std::string id;
  Texts columns;
  std::string Key(std::size_t column) const { return column < columns.size() ? UpperCase(columns[column]) : ""; }
};

// Sorting by the plainest means.
class PlainSort {
 public:
  void operator()(std::vector<Hit>& hits, std::size_t column) {
    const auto key = [&](const Hit& hit) { return hit.Key(column); };
    if (direction_.empty() || column != column_) {
      direction_ = !hits.empty() && key(hits.front()) > key(hits.back()) ? "DOWN" : "UP";
    }
    direction_ = direction_ == "UP" ? "DOWN" : "UP";
    column_ = column;
    if (direction_ == "UP") std::ranges::stable_sort(hits, std::ranges::less(), key);
    if (direction_ == "DOWN") std::ranges::stable_sort(hits, std::ranges::greater(), key);
  }

 private:
  std::string direction_;
  std::size_t column_ = 0;
};

TEST(HitListSort, AgreesWithAPlainSortForAnyListAndAnyCalls) {
  std::mt19937 random(1187);
  const auto below = [&](std::size_t limit) { return static_cast<int>(random() % limit); };
  for (int round = 0; round < 40; ++round) {
    std::vector<Hit> hits;
    Texts rows;
    for (int left = round < 8 ? round / 2 : below(60); left > 0; --left) {
      Texts columns;
      for (int column = below(3); column >= 0; --column) columns.emplace_back(below(3), "abAB"[below(4)]);
      hits.push_back({std::to_string(hits.size()), std::move(columns)});
      rows.push_back(Row(hits.back().id, hits.back().columns));
    }
    WithAnswers({HitAnswer({kText, kText, kText}, rows)}, [&](Page& page) {
      PlainSort plainSort;
      SearchAll(page.query);
      const std::vector<Hit> all = hits;
      for (int call = 0; call < 12; ++call) {
        if (call == 6) {  // the same query again
          SearchAll(page.query);
          ASSERT_EQ(Walk(page.query).size(), all.size());
          hits = all;
          plainSort = {};
        }
        const int column = below(3);
        plainSort(hits, static_cast<std::size_t>(column));
        ASSERT_EQ(page.query.TELOSortHitlistInit(column + 1), Variant::Long(static_cast<int>(hits.size()) + 1));
        Texts ids;
        for (const Hit& hit : hits) ids.push_back(hit.id);
        // A deletion may come in between.
        const int read = below(hits.size() + 1);
        Texts found = Walk(page.query, static_cast<std::size_t>(read));
        if (!hits.empty() && below(4) == 0) {
          const int place = below(hits.size());
          hits.erase(hits.begin() + place);
          if (place >= read) ids.erase(ids.begin() + place);
          ASSERT_EQ(page.query.TELODeleteFromHitlist(place + 1), Variant::Long(static_cast<int>(hits.size())));
        }
        std::ranges::copy(NextIds(page.query), std::back_inserter(found));
        ASSERT_EQ(found, ids) << "round " << round << ", call " << call;
      }
    });
  }
}

TEST(HitListSort, RefusesColumnsThatTheTitleRowLacksAndHitsThatTheListLacks) {
  WithAnswers(
      {HitAnswer({kText}, {Row("1", {"a", "x"}), Row("2", {"b", "x"})}), Answer({"0", "", "0", "^0^"})},
      [](Page& page) {
        const auto refuses = [&](const Variant& number) {
          EXPECT_EQ(page.query.TELOSortHitlistInit(number), kFailed) << number.TypeName();
          EXPECT_EQ(page.query.TELODeleteFromHitlist(number), kFailed) << number.TypeName();
        };
        refuses(1);  // no query yet
        EXPECT_EQ(page.query.TELOSortHitlistNext(), "");
        SearchAll(page.query);
        page.query.TELOSortHitlistInit(1);
        EXPECT_THAT(Walk(page.query, 1), ElementsAre("2"));
        for (const char* const number : {"0", "-1", "3", "2147483647", "2147483644", "65537", "1e12", "title", ""}) {
          SCOPED_TRACE(number);
          refuses(number);
        }
        refuses(Variant::Null());
        EXPECT_EQ(page.query.TELOSortHitlistInit(2), kFailed);
        EXPECT_NE(page.Log().find("'TELOSortHitlistInit()': 9 - "), std::string::npos);
        EXPECT_NE(page.Log().find("'TELODeleteFromHitlist()': 9 - "), std::string::npos);
        EXPECT_THAT(NextIds(page.query), ElementsAre("1"));  // place and order are as before
        page.query.TELOSortHitlistInit(1);                   // and so is the direction
        EXPECT_THAT(Walk(page.query), ElementsAre("1", "2"));
        page.query.TELODeleteFromHitlist(1);
        EXPECT_EQ(page.query.TELODeleteFromHitlist(1), Variant::Long(0));
        EXPECT_EQ(page.query.TELODeleteFromHitlist(1), kFailed);
        SearchAll(page.query);
        refuses(1);  // no title row
        EXPECT_EQ(page.query.TELOSortHitlistNext(), "");
      });
}

TEST(HitListSort, IsIndependentOfOtherRequestsAndOfTheQuerysRows) {
  WithAnswers({HitAnswer({kText}, {Row("1", {"a"}), Row("2", {"b"}), Row("3", {"c"})}), Answer({"Mail,x", "Alpha,y"}),
               Framed("Status: No hits\r\n"), Answer({"7", "", "0"})},
              [](Page& page) {
                SearchAll(page.query);
                page.query.TELOSortHitlistInit(1);
                page.query.TELODeleteFromHitlist(1);
                Variant id;
                page.query.TELOSortHitlistNext();
                EXPECT_EQ(page.query.TELOQueryArchiveNext(), "^title^");
                EXPECT_EQ(page.query.TELOQueryArchiveNext(nullptr, nullptr, &id), "^a^");
                EXPECT_EQ(page.query.TELOSortHitlistNext(nullptr, nullptr, &id), "^b^");
                EXPECT_EQ(page.query.TELOGetChannelsInit(), Variant::Long(2));
                EXPECT_EQ(page.query.TELOSortHitlistNext(nullptr, nullptr, &id), "^a^");
                EXPECT_EQ(id, Variant("1"));
                EXPECT_EQ(page.query.TELOSortHitlistNext(nullptr, nullptr, &id), "");
                EXPECT_EQ(id, Variant("1"));
                SearchAll(page.query);  // refused
                SearchAll(page.query);  // without a head
                EXPECT_EQ(page.query.TELOSortHitlistInit(1), Variant::Long(3));
                EXPECT_THAT(Walk(page.query), ElementsAre("1", "2"));
              });
}

TEST(HitListSort, ReadsRowsAsTheQueryDoes) {
  const Texts rows{"",
                   "plain",
                   "^$(#M)\\A^,^1^",
                   "^Mail^,^2^,^1^,^b^",
                   "^,^$(#M)\\A^,^3^,^1^,^a^",
                   "^$(#M)\\B^,^4^,^2^,^c",
                   "^$(#\x80\xFF)\\" + std::string(1, '\0') + "^,^5^,^1^,^\xE4^,^,^",
                   "^^,^^,^^"};
  WithAnswers({HitAnswer({kText}, {Row("7", {"x"})})}, [&](Page& page) {
    SearchAll(page.query);
    Variant out[4];
    page.query.TELOSortHitlistNext();
    EXPECT_EQ(page.query.TELOSortHitlistNext(&out[0], &out[1], &out[2], &out[3]), "^x^");
    EXPECT_THAT(out, ElementsAre("Mail", "Inbox", "7", "1"));
  });
  // A missing column is empty, and an unclosed last column extends to the end of the row.
  EXPECT_THAT(Ascending(kText, rows),
              ElementsAre(rows[0], rows[1], rows[2], rows[7], rows[4], rows[3], rows[5], rows[6]));
}

TEST(HitLinesSort, HasItsOwnLinesPositionAndDirection) {
  const std::string given = Lines({kNumber}, {Row("1", {"9"}), Row("2", {"10"})});
  WithAnswers({HitAnswer({kText}, {Row("7", {"x"})})}, [&](Page& page) {
    clsQuery& query = page.query;
    EXPECT_EQ(query.TELOSortHitlist2Next(), "");
    EXPECT_EQ(query.TELOSortHitlist2Init(given, "1"), Variant::Long(3));
    EXPECT_EQ(query.TELOSortHitlist2Next(), "^0^,^0^,^0^,^title^");
    EXPECT_EQ(query.TELOSortHitlist2Next(), Row("2", {"10"}));
    SearchAll(query);
    query.TELOSortHitlistInit(1);
    EXPECT_EQ(query.TELOSortHitlist2Next(), Row("1", {"9"}));
    // The same lines again, in the other direction.
    query.TELOSortHitlist2Init(given, 1);
    EXPECT_THAT(GivenRows(query, 2), ElementsAre(Row("1", {"9"}), Row("2", {"10"})));
    // Without the line end behind the last row; an empty line is a row, and comes before numbers.
    query.TELOSortHitlist2Init(given.substr(0, given.size() - 2), 1);
    EXPECT_THAT(GivenRows(query, 2), ElementsAre(Row("2", {"10"}), Row("1", {"9"})));
    query.TELOSortHitlist2Init(given + "\r\n", 1);
    EXPECT_THAT(GivenRows(query, 3), ElementsAre("", Row("1", {"9"}), Row("2", {"10"})));
    EXPECT_THAT(Walk(query), ElementsAre("7"));
    EXPECT_EQ(page.server.Connections(), 1);
  });
}

TEST(HitLinesSort, AFailureLeavesTheEarlierLines) {
  clsQuery query;
  const std::string given = Lines({kText}, {Row("1", {"a"}), Row("2", {"b"})});
  EXPECT_EQ(query.TELOSortHitlist2Init(given, 1), Variant::Long(3));
  query.TELOSortHitlist2Next();
  EXPECT_EQ(query.TELOSortHitlist2Next(), Row("2", {"b"}));
  struct Case {
    const char* name;
    Variant lines;
    Variant column = "1";
  };
  for (const Case& test :
       {Case{"no lines", ""}, Case{"one line end", "\r\n"}, Case{"flags alone", "^0^,^0^,^0^,^0^\r\n"},
        Case{"an empty title row", "^0^,^0^,^0^,^0^\r\n\r\n"},
        Case{"a title row of three fields", "^0^\r\n^a^,^b^,^c^\r\n"},
        Case{"line ends of another kind", "^0^\n^a^,^b^,^c^,^d^\n"}, Case{"a column below 1", given, "0"},
        Case{"no such column", given, "2"}, Case{"no number", given, "a"}, Case{"no text", Missing}}) {
    EXPECT_EQ(query.TELOSortHitlist2Init(test.lines, test.column), kFailed) << test.name;
  }
  EXPECT_EQ(query.TELOSortHitlist2Next(), Row("1", {"a"}));
  EXPECT_EQ(query.TELOSortHitlist2Next(), "");
  query.TELOSortHitlist2Init(given, 1);  // the direction was kept
  EXPECT_THAT(GivenRows(query, 2), ElementsAre(Row("1", {"a"}), Row("2", {"b"})));
}

}  // namespace
}  // namespace oxaqrycln::testing
