#include "values/base64.h"

#include <gpgrt.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace oxaqrycln {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The library skips characters that it does not know, so the form of a text is checked first.
bool IsBase64(std::string_view text) noexcept {
  if (text.size() % 4 != 0) return false;
  const std::string_view digits = text.substr(0, text.find('='));
  if (digits.find_first_not_of(kAlphabet) != std::string_view::npos || text.size() - digits.size() > 2) return false;
  if (digits.size() == text.size()) return true;
  if (text.back() != '=') return false;
  // The bits of the last digit that belong to no byte are 0.
  const std::size_t unused = text.size() - digits.size() == 2 ? 0xF : 0x3;
  return (kAlphabet.find(digits.back()) & unused) == 0;
}

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
  if (bytes.empty()) return {};
  gpgrt_stream_t stream = gpgrt_fopenmem(0, "w+b");
  if (stream == nullptr) throw std::bad_alloc();
  // An empty title writes the bare encoding, with a line end after every 64 digits.
  gpgrt_b64state_t state = gpgrt_b64enc_start(stream, "");
  const bool written = state != nullptr && gpgrt_b64enc_write(state, bytes.data(), bytes.size()) == 0;
  const bool finished = state != nullptr && gpgrt_b64enc_finish(state) == 0;
  void* memory = nullptr;
  std::size_t length = 0;
  const bool taken = gpgrt_fclose_snatch(stream, &memory, &length) == 0;
  const std::unique_ptr<void, decltype(&gpgrt_free)> owned(memory, &gpgrt_free);
  if (!written || !finished || !taken) throw std::bad_alloc();
  std::string text(static_cast<const char*>(memory), length);
  std::erase(text, '\n');
  return text;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  if (!IsBase64(text)) return std::nullopt;
  std::string bytes(text);
  gpgrt_b64state_t state = gpgrt_b64dec_start(nullptr);
  if (state == nullptr) throw std::bad_alloc();
  std::size_t length = 0;
  const gpg_error_t failed = gpgrt_b64dec_proc(state, bytes.data(), bytes.size(), &length);
  gpgrt_b64dec_finish(state);
  // The library reports the end of the data as an error.
  if (failed != 0 && gpg_err_code(failed) != GPG_ERR_EOF) return std::nullopt;
  bytes.resize(length);
  return bytes;
}

}  // namespace oxaqrycln
