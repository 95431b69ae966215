#include <gtest/gtest.h>

#include "platform/base64.h"
#include "platform/cipher_objects.h"
#include "platform/des56.h"
#include "platform/errors.h"
#include "platform/objects.h"
#include "tests/support/page.h"

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

TEST(Encryption, ComesBackWithTheSameKeyOnly) {
  WithAnswer({}, [](Page& page) {
    clsQuery& query = page.query;
    query.strDES56Key = "standard";
    for (const std::string& text : {std::string(), std::string("short"), std::string("eight...", 8),
                                    std::string("any\0 \xFF byte", 11), std::string(10'000, 'x')}) {
      EXPECT_EQ(query.Decrypt(query.Encrypt(text, "key"), "key"), text);
      EXPECT_EQ(query.DecryptBase64(query.EncryptBase64(text)), text);
      EXPECT_EQ(query.DecryptBase64(query.EncryptBase64(text, "key"), "key"), text);
      EXPECT_EQ(query.DecryptBase64(query.EncodeBase64(query.Encrypt(text, "key")), "key"), text);
      EXPECT_EQ(query.Decrypt(query.Encrypt(text), "standard"), text);
      EXPECT_EQ(query.Decrypt(query.Encrypt(text, ""), ""), text);
      EXPECT_EQ(query.DecodeBase64(query.EncodeBase64(text)), text);
    }
    EXPECT_NE(query.Encrypt("same"), query.Encrypt("same"));
    EXPECT_EQ(query.Encrypt("12345678").size(), 24U);
    EXPECT_EQ(page.Log().find("Processing error"), std::string::npos) << page.Log();
    EXPECT_NE(query.Decrypt(query.Encrypt("text", ""), "standard"), "text");  // mostly "", by its padding
    const std::string cipher = query.Encrypt("text", "key");
    for (const std::string& bad : {std::string(), std::string(8, 'x'), cipher + "x", cipher.substr(0, 9)}) {
      EXPECT_EQ(query.Decrypt(bad, "key"), "");
    }
    // What no padding is: too long, none, uneven.
    for (const std::string& end : {std::string(8, '\x09'), std::string(8, '\0'), std::string("......\x03\x02")}) {
      const std::string start(8, 's');
      EXPECT_EQ(query.Decrypt(start + DesCbcEncrypt(DesKeyFromText("key"), start, end), "key"), "") << end;
    }
    query.strDES56Key = "";
    EXPECT_EQ(query.Decrypt(query.Encrypt("text"), ""), "text");
    EXPECT_EQ(query.DecryptBase64("no Base64!"), "");
    EXPECT_NE(page.Log().find("'Decrypt()': 5 - "), std::string::npos);
    EXPECT_NE(page.Log().find("'DecryptBase64()': 5 - "), std::string::npos);
  });
}

TEST(Encryption, FailsThroughItsHandlersWithoutItsObjects) {
  WithAnswer({}, [](Page& page) {
    clsQuery& query = page.query;
    UnregisterObject("DES56Lib.DES56");
    EXPECT_EQ(query.Encrypt("x"), "");
    EXPECT_EQ(query.Decrypt("x"), "");
    EXPECT_EQ(query.DecryptBase64("eHh4"), "");
    EXPECT_EQ(query.EncodeBase64("x"), "eA==");
    RegisterObject("DES56Lib.DES56", MakeDesObject);
    UnregisterObject("DES56Lib.Base64");
    EXPECT_EQ(query.EncryptBase64("x"), "");
    EXPECT_EQ(query.DecodeBase64("eA=="), "");
    RegisterObject("DES56Lib.Base64", MakeBase64Object);
    const std::string log = page.Log();
    for (const char* routine : {"Encrypt", "Decrypt", "DecryptBase64", "EncryptBase64", "DecodeBase64"}) {
      const std::string line = "'" + std::string(routine) + "()': 429 - ";
      EXPECT_NE(log.find(line), std::string::npos) << routine;
      EXPECT_EQ(log.find(line), log.rfind(line)) << routine << " is there more than once";
    }
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
