#include "platform/ciphers/des56.h"

#include <gcrypt.h>

#include <algorithm>
#include <bit>
#include <memory>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

using Cipher = std::unique_ptr<std::remove_pointer_t<gcry_cipher_hd_t>, decltype(&gcry_cipher_close)>;

// The one place where errors of the cipher library become run-time errors.
void Check(gcry_error_t failed) {
  if (failed != 0) throw RuntimeError(error::kInternalError, std::string("DES: ") + gcry_strerror(failed));
}

Cipher OpenCipher(const DesKey& key, std::string_view start) {
  static const bool ready = gcry_check_version(nullptr) != nullptr;  // also starts the library
  if (!ready) throw RuntimeError(error::kInternalError, "DES: the cipher library does not start");
  gcry_cipher_hd_t handle = nullptr;
  Check(gcry_cipher_open(&handle, GCRY_CIPHER_DES, GCRY_CIPHER_MODE_CBC, 0));
  Cipher cipher(handle, &gcry_cipher_close);
  // Any text is a key, the weak ones included: an empty one is seven zero bytes.
  Check(gcry_cipher_ctl(handle, GCRYCTL_SET_ALLOW_WEAK_KEY, nullptr, 1));
  const gcry_error_t failed = gcry_cipher_setkey(handle, key.data(), key.size());
  if (gcry_err_code(failed) != GPG_ERR_WEAK_KEY) Check(failed);
  Check(gcry_cipher_setiv(handle, start.data(), start.size()));
  return cipher;
}

void Require(bool hasSoundLength) {
  if (!hasSoundLength) throw RuntimeError(error::kInvalidProcedureCall, "The cipher text has a wrong length");
}

void RequireBlocks(std::string_view start, std::string_view blocks) {
  Require(start.size() == kDesBlock && blocks.size() % kDesBlock == 0);
}

}  // namespace

DesKey DesKeyFromText(std::string_view text) noexcept {
  constexpr std::size_t kKeyBytes = 7;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < kKeyBytes; ++i) {
    bits = bits << 8U | (i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0U);
  }
  DesKey key{};
  for (std::size_t i = 0; i < key.size(); ++i) {
    const auto seven = static_cast<unsigned>(bits >> (49U - 7U * i) & 0x7FU);
    const bool isOdd = std::popcount(seven) % 2 == 1;
    key[i] = static_cast<std::uint8_t>(seven << 1U | (isOdd ? 0U : 1U));
  }
  return key;
}

std::string DesCbcEncrypt(const DesKey& key, std::string_view start, std::string_view blocks) {
  RequireBlocks(start, blocks);
  std::string result(blocks);
  if (!result.empty())
    Check(gcry_cipher_encrypt(OpenCipher(key, start).get(), result.data(), result.size(), nullptr, 0));
  return result;
}

std::string DesCbcDecrypt(const DesKey& key, std::string_view start, std::string_view blocks) {
  RequireBlocks(start, blocks);
  std::string result(blocks);
  if (!result.empty())
    Check(gcry_cipher_decrypt(OpenCipher(key, start).get(), result.data(), result.size(), nullptr, 0));
  return result;
}

std::string DesEncrypt(const DesKey& key, std::string_view text) {
  const std::size_t padding = kDesBlock - text.size() % kDesBlock;
  std::string start(kDesBlock, '\0');
  std::string padded = std::string(text) + std::string(padding, static_cast<char>(padding));
  OpenCipher(key, start);  // starts the library before it is asked for random bytes
  gcry_randomize(start.data(), start.size(), GCRY_STRONG_RANDOM);
  return start + DesCbcEncrypt(key, start, padded);
}

std::string DesDecrypt(const DesKey& key, std::string_view cipher) {
  Require(cipher.size() >= 2 * kDesBlock);
  std::string text = DesCbcDecrypt(key, cipher.substr(0, kDesBlock), cipher.substr(kDesBlock));
  const auto padding = static_cast<std::uint8_t>(text.back());
  const bool sound = padding >= 1 && padding <= kDesBlock &&
                     std::all_of(text.end() - padding, text.end(), [&](char each) { return each == text.back(); });
  if (!sound) throw RuntimeError(error::kInvalidProcedureCall, "The text was not encrypted with this key");
  text.resize(text.size() - padding);
  return text;
}

}  // namespace oxaqrycln
