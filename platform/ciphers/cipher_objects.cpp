#include "platform/ciphers/cipher_objects.h"

#include <utility>

#include "platform/ciphers/des56.h"
#include "values/base64.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

class Des56 final : public DesObject {
 public:
  void SetKey(std::string_view key) override { key_ = DesKeyFromText(key); }
  std::string Encrypt(std::string_view text) override { return DesEncrypt(key_, text); }
  std::string Decrypt(std::string_view cipher) override { return DesDecrypt(key_, cipher); }

 private:
  DesKey key_ = DesKeyFromText({});
};

class Base64 final : public Base64Object {
 public:
  std::string Encode(std::string_view text) override { return EncodeBase64(text); }
  std::string Decode(std::string_view text) override {
    auto decoded = DecodeBase64(text);
    if (!decoded) throw RuntimeError(error::kInvalidProcedureCall, "The text is no Base64");
    return *std::move(decoded);
  }
};

}  // namespace

std::shared_ptr<DesObject> MakeDesObject() { return std::make_shared<Des56>(); }

std::shared_ptr<Base64Object> MakeBase64Object() { return std::make_shared<Base64>(); }

}  // namespace oxaqrycln
