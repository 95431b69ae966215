#include "support/text_helpers.h"

#include <gtest/gtest.h>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

TEST(Encode, MakesTwoDigitsACharacterFromTheLastToTheFirst) {
  EXPECT_EQ(Encode(""), "");
  EXPECT_EQ(Encode("A"), "66");
  EXPECT_EQ(Encode("AB"), "6866");  // 68 is octal 104, decimal 104 is 0x68
  EXPECT_EQ(Encode("\xFF"), "90");  // 256 is octal 400, 0x190 loses its first digit
  EXPECT_THROW(Encode(std::string(32768, 'a')), RuntimeError);
}

TEST(Decode, UndoesEncodeForEveryCharacterThatLostNothing) {
  for (int code = 0; code < 173; ++code) {
    for (int position = 1; code + position < 174; ++position) {
      const std::string text = std::string(static_cast<std::size_t>(position - 1), '\0') + static_cast<char>(code);
      ASSERT_EQ(Decode(Encode(text)), text) << code << " at " << position;
    }
  }
  EXPECT_EQ(Decode("6a"), "E");  // either letter case: 0x6a is 106, octal 106 is 70
}

TEST(Decode, RoundsHalfTheLengthToTheEvenNumber) {
  EXPECT_EQ(Decode("6"), "");
  EXPECT_EQ(Decode("x6866"), "AB");  // the first of five characters is passed over
  EXPECT_THROW(Decode("666"), RuntimeError);
  EXPECT_THROW(Decode("6666666"), RuntimeError);
}

TEST(Decode, RefusesWhatEncodeNeverMakes) {
  for (const char* bad : {"08", "5A", "zz", "6 ", "00", "-1"}) EXPECT_THROW(Decode(bad), RuntimeError) << bad;
}

TEST(InStrExt, CountsOverlappingOccurrences) {
  EXPECT_EQ(InStrExt("aaaa", "aa", 3), 3);
  EXPECT_EQ(InStrExt("aaaa", "aa", 4), 0);
  EXPECT_EQ(InStrExt("^a^,^b^,^c^", "^,^", 2), 7);
  EXPECT_EQ(InStrExt("", "a", 1), 0);
  EXPECT_EQ(InStrExt("aa", "a", 0), 0);
}

TEST(GetPages, ExpandsRangesInBothDirections) {
  struct Case {
    const char* items;
    const char* pages;
  };
  for (const Case& each :
       {Case{"1;4-6;9-7", "1,4,5,6,9,8,7"}, Case{"3-", "3"}, Case{"-5", "5"}, Case{"0", ""}, Case{"", ""},
        Case{"a;2;b-3;4-x", "2,3,4"}, Case{"5-5", "5"}, Case{" 2 ; 3 - 4 ", "2,3,4"}, Case{"-", "0"}}) {
    EXPECT_EQ(GetPages(each.items), each.pages) << each.items;
  }
  EXPECT_THROW(GetPages("1-2000000000"), RuntimeError);
}

}  // namespace
}  // namespace oxaqrycln
