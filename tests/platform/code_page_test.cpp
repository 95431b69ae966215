#include "platform/code_page.h"

#include <gtest/gtest.h>

#include "platform/sorted_list.h"

namespace oxaqrycln {
namespace {

TEST(CodePage, EveryByteSurvivesTheWayToUtf8AndBack) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  EXPECT_EQ(FromUtf8(ToUtf8(all)), all);
  EXPECT_EQ(ToUtf8("\x80 \xE4"), "\u20AC \u00E4");
}

TEST(CodePage, RefusesWhatIsNotWellFormedOrHasNoPlace) {
  for (const char* bad :
       {"\xC3", "\xFF", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\u0100", "\U0001F600", "\xE0\x81\x81"}) {
    EXPECT_EQ(FromUtf8(bad), std::nullopt) << bad;
  }
}

TEST(CodePage, MapsTheCaseOfItsOwnLetters) {
  EXPECT_EQ(UpperCase("az\xE4\xFE\xF7\xDF\x9A\x9C\x9E\xFF\xB5"), "AZ\xC4\xDE\xF7\xDF\x8A\x8C\x8E\x9F\xB5");
  EXPECT_EQ(LowerCase("AZ\xC4\xD7\x9F"), "az\xE4\xD7\xFF");
}

TEST(SortedList, KeepsTheNumberBesideEachTextAndTheOrderOfEquals) {
  SortedList list;
  list.Add("beta", 1);
  list.Add("Alpha", 2);
  EXPECT_EQ(list.Text(0), "Alpha");
  list.Add("ALPHA", 3);
  list.Add("\xE4", 4);
  EXPECT_EQ(list.Data(0), 2);
  EXPECT_EQ(list.Text(1), "ALPHA");
  EXPECT_EQ(list.Data(3), 4);
  EXPECT_ANY_THROW(list.Text(4));
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
}

}  // namespace
}  // namespace oxaqrycln
