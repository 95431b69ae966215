#include <gtest/gtest.h>

#include "component/objects.h"
#include "platform/ciphers/cipher_objects.h"
#include "platform/ciphers/des56.h"
#include "tests/support/page.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

TEST(Encryption, ComesBackWithTheSameKeyOnly) {
  WithAnswer({}, [](Page& page) {
    clsQuery& query = page.query;
    query.strDES56Key = "standard";
    for (const std::string& text : {std::string(), std::string("short"), std::string("eight...", 8),
                                    std::string("any\0 \xFF byte", 11), std::string(10'000, 'x')}) {
      EXPECT_EQ(query.DecryptBase64(query.EncryptBase64(text)), text);
      EXPECT_EQ(query.Decrypt(query.DecodeBase64(query.EncryptBase64(text, "key")), "key"), text);
      EXPECT_EQ(query.DecryptBase64(query.EncodeBase64(query.Encrypt(text, "key")), "key"), text);
      EXPECT_EQ(query.Decrypt(query.Encrypt(text), "standard"), text);
      EXPECT_EQ(query.Decrypt(query.Encrypt(text, ""), ""), text);
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
