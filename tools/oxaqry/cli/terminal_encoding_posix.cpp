#include "tools/oxaqry/cli/terminal_encoding.h"

#include <iconv.h>
#include <langinfo.h>
#include <locale.h>

#include <array>
#include <cerrno>
#include <utility>

namespace oxaqrycln::oxaqry {
namespace {

bool IsContinuation(char byte) noexcept { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

// The number of bytes at the end that begin a UTF-8 character without ending it.
std::size_t UnfinishedBytes(const std::string& utf8) {
  std::size_t count = 0;
  while (count < utf8.size() && count < 4 && IsContinuation(utf8[utf8.size() - count - 1])) ++count;
  if (count == utf8.size()) return 0;
  const auto first = static_cast<unsigned char>(utf8[utf8.size() - count - 1]);
  const std::size_t wanted = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
  return count + 1 < wanted ? count + 1 : 0;
}

std::string FromUtf8To(const std::string& encoding, const std::string& text) {
  iconv_t conversion = iconv_open(encoding.c_str(), "UTF-8");
  // The value that POSIX gives for a failure. NOLINTNEXTLINE(performance-no-int-to-ptr)
  if (conversion == reinterpret_cast<iconv_t>(-1)) return text;
  std::string source = text;
  char* next = source.data();
  std::size_t left = source.size();
  std::string result;
  std::array<char, 1024> piece{};
  while (left > 0) {
    char* end = piece.data();
    std::size_t room = piece.size();
    const bool failed = iconv(conversion, &next, &left, &end, &room) == static_cast<std::size_t>(-1);
    const int reason = failed ? errno : 0;
    result.append(piece.data(), end);
    if (!failed || reason == E2BIG) continue;
    result += '?';
    do {
      ++next;
      --left;
    } while (left > 0 && IsContinuation(*next));
  }
  iconv_close(conversion);
  return result;
}

}  // namespace

std::string LocaleEncoding() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) return "";  // one that is not installed
  const std::string name = nl_langinfo_l(CODESET, locale);
  freelocale(locale);
  const bool isUnset = name == "ANSI_X3.4-1968" || name == "US-ASCII" || name == "646";
  return isUnset || name == "UTF-8" ? "" : name;
}

EncodedStream::EncodedStream(std::ostream& stream, std::string encoding)
    : stream_(stream), target_(stream.rdbuf()), encoding_(std::move(encoding)) {
  stream_.rdbuf(this);
}

EncodedStream::~EncodedStream() {
  stream_.rdbuf(target_);
  target_->sputn(pending_.data(), static_cast<std::streamsize>(pending_.size()));
  target_->pubsync();
}

EncodedStream::int_type EncodedStream::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  const char byte = traits_type::to_char_type(character);
  return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

std::streamsize EncodedStream::xsputn(const char* text, std::streamsize size) {
  pending_.append(text, static_cast<std::size_t>(size));
  const std::size_t whole = pending_.size() - UnfinishedBytes(pending_);
  const std::string bytes = FromUtf8To(encoding_, pending_.substr(0, whole));
  pending_.erase(0, whole);
  const auto count = static_cast<std::streamsize>(bytes.size());
  return target_->sputn(bytes.data(), count) == count ? size : 0;
}

int EncodedStream::sync() { return target_->pubsync(); }

}  // namespace oxaqrycln::oxaqry
