#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

using Texts = std::vector<std::string>;

Variant Search(clsQuery& query, Variant* status = nullptr) {
  return query.TELOQueryArchiveInit("word", 10, 100, "F", "R", Missing, Missing, nullptr, nullptr, nullptr, nullptr,
                                    status);
}

TEST(Query, SendsItsValuesInTheServersOrderAndReadsTheHead) {
  WithAnswer({"42", "10=Title;11=Date=x", "1", "store", "^r^,^d^,^v^,^Title^"}, [](Page& page) {
    Variant out[5];
    EXPECT_EQ(page.query.TELOQueryArchiveInit("a AND b", 10, 500, "Std", "$(#M)", 7, "L2", &out[0], &out[1], &out[2],
                                              &out[3], &out[4]),
              Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^QueryArchive^,^a AND b^,^10^,^500^,^7^,^Std^,^$(#M)^,^L2^");
    EXPECT_THAT(out, ::testing::ElementsAre("10,11", "Title,Date=x", "42", true, ""));
    Variant keysAlone = "untouched";
    page.query.TELOQueryArchiveInit("q", 1, 1, "", "", Missing, Missing, &keysAlone);
    EXPECT_EQ(page.LastCommand(), "^QueryArchive^,^q^,^1^,^1^,^^,^^,^^,^^");
    EXPECT_EQ(keysAlone, Variant("untouched"));
  });
}

TEST(HitList, IsWalkedFromTheTitleRow) {
  WithAnswer({"3", "", "0", "store", "^junk^,^DocID^,^Ver^,^Title^,^Date^",
              "^$(#Mail)\\Inbox^,^4711^,^2^,^Offer^,^01.02.2003^", "^$(#M)\\A^,^1^,^2^"},
             [](Page& page) {
               EXPECT_EQ(Search(page.query), Variant::Long(3));
               Variant out[4];
               const auto next = [&] { return page.query.TELOQueryArchiveNext(&out[0], &out[1], &out[2], &out[3]); };
               EXPECT_EQ(next(), "^Title^,^Date^");
               EXPECT_THAT(out, ::testing::ElementsAre("Channel", "Archive", "DocID", "Ver"));
               EXPECT_EQ(next(), "^Offer^,^01.02.2003^");
               EXPECT_THAT(out, ::testing::ElementsAre("Mail", "Inbox", "4711", "2"));
               EXPECT_EQ(next(), "");  // a row without display columns
               EXPECT_EQ(next(), "");
               EXPECT_THAT(out, ::testing::ElementsAre("M", "A", "1", "2"));
               EXPECT_EQ(page.Log().find("Processing error"), std::string::npos) << page.Log();
             });
}

TEST(HitList, FindsTheFieldsBehindAFieldOfAnyLength) {
  Texts lines{"1", "", "0", "store", "^t^,^d^,^v^,^c^"};
  for (std::size_t length = 0; length < 70; ++length) {
    lines.push_back("^$(#M)\\A^,^" + std::string(length, 'x') + "^,^2^,^a^,^b^");
  }
  WithAnswer(lines, [&](Page& page) {
    Search(page.query);
    page.query.TELOQueryArchiveNext();
    for (std::size_t length = 0; length < 70; ++length) {
      Variant document;
      Variant version;
      EXPECT_EQ(page.query.TELOQueryArchiveNext(nullptr, nullptr, &document, &version), "^a^,^b^") << length;
      EXPECT_EQ(document, Variant(std::string(length, 'x')));
      EXPECT_EQ(version, Variant("2"));
    }
  });
}

TEST(HitList, ReadsOrReportsARowOfAnotherForm) {
  struct Case {
    const char* row;
    const char* read;  // document|version|channel|archive|columns|error
    bool asksForChannel = true;
  };
  for (const Case& each : {Case{"^Mail^,^1^,^2^,^x^", "1|2||||5"},
                           {"^Mail^,^1^,^2^,^x^", "1|2||ail|^x^|", false},
                           {"^)\\A^,^1^,^2^,^x^", "1|2||||5"},
                           {"^$(#)\\^,^1^,^2^,^x^,^y", "1|2|||^x^,^y|"},
                           {"^$(#M)\\A^,^1^,^2", "1|2,^|M|A|$(#M)\\A^,^1^,^2|"},
                           {"^$(#M)\\A^,^1", "1,^|||||9"},
                           {"", "|||||9"},
                           {"$(#M)\\A^,^1^,^2^,^x", "2|x,^||||5"},
                           {"^^,^^,^^", "|||||5"},
                           {"^,^,^1^,^2^,^x^", "1|2||||5"},
                           {"^$(#M)\\A^,^,^1^,^2^,^x^", ",^1|2|M|A|^2^,^x^|"}}) {
    WithAnswer({"1", "", "0", "store", "^t^,^d^,^v^,^c^", each.row, "^$(#M)\\A^,^1^,^2^,^x^"}, [&](Page& page) {
      Search(page.query);
      page.query.TELOQueryArchiveNext();
      Variant out[] = {"", "", "", ""};
      const std::string columns =
          page.query.TELOQueryArchiveNext(each.asksForChannel ? &out[2] : nullptr, &out[3], &out[0], &out[1]);
      std::string read;
      for (const Variant& value : out) read += value.ToText() + "|";
      const std::string error = "'TELOQueryArchiveNext()': ";
      const std::size_t failure = page.Log().find(error);
      read += columns + "|" + (failure == std::string::npos ? "" : page.Log().substr(failure + error.size(), 1));
      EXPECT_EQ(read, each.read) << each.row;
    });
  }
}

TEST(Query, UsesTheLinesOfAShortAnswer) {
  const std::string beforeThird = Answer({"7", "", "01"});
  WithAnswers({Answer({"1", "", "0", "s", "^t^,^d^,^v^,^c^"}), beforeThird, Answer({"7", "k=v;broken"}), Answer({"7"}),
               Answer({"1", "", "0", "s"})},
              [](Page& page) {
                Search(page.query);
                Variant total;
                Variant multiTiff;
                Variant keys;
                Variant values;
                Variant status = "untouched";
                const auto search = [&] {
                  return page.query.TELOQueryArchiveInit("w", 1, 1, "", "", Missing, Missing, &keys, &values, &total,
                                                         &multiTiff, &status);
                };
                EXPECT_EQ(search(), Variant::Long(-1));  // three lines
                EXPECT_EQ(total, Variant("7"));
                EXPECT_EQ(multiTiff, Variant(false));
                EXPECT_EQ(status, Variant("untouched"));
                EXPECT_EQ(search(), Variant::Long(-2));  // a layout entry without "="
                EXPECT_EQ(keys, Variant("k,"));
                EXPECT_NE(page.Log().find("'TELOQueryArchiveInit()': 5 - "), std::string::npos);
                EXPECT_EQ(search(), Variant::Long(-3));  // no layout line
                EXPECT_EQ(keys, Variant(""));
                EXPECT_EQ(values, Variant(""));
                EXPECT_NE(page.Log().find("'TELOQueryArchiveInit()': 9 - "), std::string::npos);
                EXPECT_EQ(search(), Variant::Long(0));
                EXPECT_EQ(status, Variant(""));
                EXPECT_EQ(page.query.TELOQueryArchiveNext(), "");
              });
}

}  // namespace
}  // namespace oxaqrycln::testing
