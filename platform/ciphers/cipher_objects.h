// cipher_objects.h - the automation objects of the encryption services, as pages' hosts may replace them in the object
// registry: "DES56Lib.DES56" and "DES56Lib.Base64".
#ifndef OXAQRYCLN_PLATFORM_CIPHERS_CIPHER_OBJECTS_H_
#define OXAQRYCLN_PLATFORM_CIPHERS_CIPHER_OBJECTS_H_

#include <memory>
#include <string>
#include <string_view>

#include "values/variant.h"

namespace oxaqrycln {

// Texts are single-byte texts that may hold any byte; failures are RuntimeErrors.
class DesObject : public Object {
 public:
  virtual void SetKey(std::string_view key) = 0;
  virtual std::string Encrypt(std::string_view text) = 0;
  virtual std::string Decrypt(std::string_view cipher) = 0;
};

class Base64Object : public Object {
 public:
  virtual std::string Encode(std::string_view text) = 0;
  virtual std::string Decode(std::string_view text) = 0;
};

// The built-in ones.
std::shared_ptr<DesObject> MakeDesObject();
std::shared_ptr<Base64Object> MakeBase64Object();

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_CIPHERS_CIPHER_OBJECTS_H_
