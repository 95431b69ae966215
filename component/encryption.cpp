// The encryption services: external objects, made anew for every call.
#include <memory>
#include <string>
#include <string_view>

#include "component/clsQuery.h"
#include "component/objects.h"
#include "component/query_state.h"
#include "platform/ciphers/cipher_objects.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

template <typename Kind>
std::shared_ptr<Kind> Make(std::string_view programId) {
  auto object = std::dynamic_pointer_cast<Kind>(CreateObject(programId));
  if (object == nullptr) throw RuntimeError(error::kCannotCreateObject);
  return object;
}

std::shared_ptr<DesObject> MakeDes() { return Make<DesObject>("DES56Lib.DES56"); }
std::shared_ptr<Base64Object> MakeBase64() { return Make<Base64Object>("DES56Lib.Base64"); }

// An empty key counts as given.
std::string Key(const Variant& parameter, const std::string& standard) {
  return parameter.IsMissing() ? standard : parameter.ToText();
}

}  // namespace

std::string clsQuery::EncryptBase64(const Variant& strString, const Variant& strParamKey) {
  return state_->Run(std::string(), [&](std::string& result) {
    const auto des = MakeDes();
    const auto base64 = MakeBase64();
    des->SetKey(Key(strParamKey, strDES56Key));
    result = base64->Encode(des->Encrypt(strString.ToText()));
  });
}

std::string clsQuery::Encrypt(const Variant& strString, const Variant& strParamKey) {
  return state_->Run(std::string(), [&](std::string& result) {
    const auto des = MakeDes();
    des->SetKey(Key(strParamKey, strDES56Key));
    result = des->Encrypt(strString.ToText());
  });
}

std::string clsQuery::Decrypt(const Variant& strString, const Variant& strParamKey) {
  return state_->Run(std::string(), [&](std::string& result) {
    const auto des = MakeDes();
    des->SetKey(Key(strParamKey, strDES56Key));
    result = des->Decrypt(strString.ToText());
  });
}

std::string clsQuery::DecryptBase64(const Variant& strString, const Variant& strParamKey) {
  return state_->Run(std::string(), [&](std::string& result) {
    const auto des = MakeDes();
    const auto base64 = MakeBase64();
    const std::string cipher = base64->Decode(strString.ToText());
    des->SetKey(Key(strParamKey, strDES56Key));
    result = des->Decrypt(cipher);
  });
}

std::string clsQuery::DecodeBase64(const Variant& strString) {
  return state_->Run(std::string(), [&](std::string& result) { result = MakeBase64()->Decode(strString.ToText()); });
}

std::string clsQuery::EncodeBase64(const Variant& strString) {
  return state_->Run(std::string(), [&](std::string& result) { result = MakeBase64()->Encode(strString.ToText()); });
}

}  // namespace oxaqrycln
