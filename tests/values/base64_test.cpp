#include "values/base64.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace oxaqrycln {
namespace {

TEST(Base64, IsStrict) {
  struct Case {
    const char* bytes;
    const char* text;
  };
  for (const Case& each :
       {Case{"", ""}, Case{"f", "Zg=="}, Case{"fo", "Zm8="}, Case{"foo", "Zm9v"}, Case{"\xFF\xFE\xFD", "//79"}}) {
    EXPECT_EQ(EncodeBase64(each.bytes), each.text);
    EXPECT_EQ(DecodeBase64(each.text), each.bytes);
  }
  for (const char* bad : {"Zg", "Zg=", "Z===", "====", "Zg==Zg==", "Zh==", "Zm9=", "Zm 9", "Zm9v\n", "Zm-_", "=Zg="}) {
    EXPECT_EQ(DecodeBase64(bad), std::nullopt) << bad;
  }
  std::string any;
  for (int i = 0; i < 1000; ++i) any += static_cast<char>(i * 7);
  EXPECT_EQ(EncodeBase64(any).find('\n'), std::string::npos);
  EXPECT_EQ(DecodeBase64(EncodeBase64(any)), any);
}

}  // namespace
}  // namespace oxaqrycln
