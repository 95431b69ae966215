#include "values/code_page.h"

#include <gtest/gtest.h>

namespace oxaqrycln {
namespace {

TEST(CodePage, ConvertsEveryByteToUtf8AndBack) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  EXPECT_EQ(FromUtf8(ToUtf8(all)), all);
  EXPECT_EQ(ToUtf8("\x80 \xE4"), "\u20AC \u00E4");
}

TEST(CodePage, ConvertsEveryByteToUtf16AndBack) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  std::u16string utf16(all.size(), u'?');
  ToUtf16(all, utf16.data());
  EXPECT_EQ(FromUtf16(utf16), all);
  EXPECT_EQ(utf16.substr(0x7F, 6), u"\u007F\u20AC\u0081\u201A\u0192\u201E");
  for (const char16_t* bad : {u"\u0100", u"a\u0080", u"\U0001F600", u"\uFF41"}) EXPECT_EQ(FromUtf16(bad), std::nullopt);
}

TEST(CodePage, ConvertsToUtf16AtAnyLengthWithACharacterBeyondAsciiAnywhere) {
  for (std::size_t size = 0; size <= 40; ++size) {
    for (std::size_t at = 0; at <= size; ++at) {  // at the size: none
      std::string text(size, 'a');
      std::u16string expected(size, u'a');
      if (at < size) text[at] = '\x80', expected[at] = u'\u20AC';
      std::u16string utf16(size + 1, u'?');
      ToUtf16(text, utf16.data());
      EXPECT_EQ(utf16, expected + u'?') << size << ", " << at;
    }
  }
}

TEST(CodePage, RefusesMalformedTextAndUnknownCharacters) {
  for (const char* bad :
       {"\xC3", "\xFF", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\u0100", "\U0001F600", "\xE0\x81\x81"}) {
    EXPECT_EQ(FromUtf8(bad), std::nullopt) << bad;
  }
}

TEST(CodePage, MapsTheCaseOfItsOwnLetters) {
  EXPECT_EQ(UpperCase("az\xE4\xFE\xF7\xDF\x9A\x9C\x9E\xFF\xB5"), "AZ\xC4\xDE\xF7\xDF\x8A\x8C\x8E\x9F\xB5");
  EXPECT_EQ(LowerCase("AZ\xC4\xD7\x9F"), "az\xE4\xD7\xFF");
}

}  // namespace
}  // namespace oxaqrycln
