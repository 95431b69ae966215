#include "platform/ciphers/des56.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace oxaqrycln::testing {
namespace {

std::string Bytes(std::initializer_list<int> bytes) {
  std::string text;
  for (const int each : bytes) text += static_cast<char>(each);
  return text;
}

TEST(Des, GivesTheKnownAnswers) {
  // FIPS 81, CBC mode: the key 0123456789abcdef, the start value 1234567890abcdef, the text "Now is the time for all ".
  const DesKey key{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};
  const std::string start = Bytes({0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF});
  const std::string cipher = Bytes({0xE5, 0xC7, 0xCD, 0xDE, 0x87, 0x2B, 0xF2, 0x7C, 0x43, 0xE9, 0x34, 0x00,
                                    0x8C, 0x38, 0x9C, 0x0F, 0x68, 0x37, 0x88, 0x49, 0x9A, 0x7C, 0x05, 0xF6});
  EXPECT_EQ(DesCbcEncrypt(key, start, "Now is the time for all "), cipher);
  EXPECT_EQ(DesCbcDecrypt(key, start, cipher), "Now is the time for all ");
  // The weak key of zero bits, over a block of zeros.
  EXPECT_EQ(DesCbcEncrypt(DesKeyFromText(""), std::string(8, '\0'), std::string(8, '\0')),
            Bytes({0x8C, 0xA6, 0x4D, 0xE9, 0xC1, 0xB1, 0x23, 0xA7}));
}

TEST(Des, SpreadsSevenCharactersOverAKeyWithOddParity) {
  EXPECT_EQ(DesKeyFromText(std::string(7, '\0')), (DesKey{1, 1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(DesKeyFromText(std::string(7, '\xFF')), (DesKey{254, 254, 254, 254, 254, 254, 254, 254}));
  // 0x80 0x00 ... is the bit 1 and zeros; 0x01 in the seventh byte the last bit.
  EXPECT_EQ(DesKeyFromText(Bytes({0x80, 0, 0, 0, 0, 0, 1})), (DesKey{0x80, 1, 1, 1, 1, 1, 1, 2}));
  EXPECT_EQ(DesKeyFromText("secret"), DesKeyFromText(std::string("secret\0rest", 11)));
}

}  // namespace
}  // namespace oxaqrycln::testing
