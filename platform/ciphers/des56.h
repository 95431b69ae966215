// des56.h - single DES with a key of 56 bits, in CBC mode. Broken long ago: it keeps texts from casual readers,
// not from attackers; kept because pages have texts that were encrypted with it.
#ifndef OXAQRYCLN_PLATFORM_CIPHERS_DES56_H_
#define OXAQRYCLN_PLATFORM_CIPHERS_DES56_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace oxaqrycln {

inline constexpr std::size_t kDesBlock = 8;  // bytes
using DesKey = std::array<std::uint8_t, kDesBlock>;

// The first 7 bytes of the text, padded with zero bytes, are the key's bits; each 7 of them get an odd parity bit.
DesKey DesKeyFromText(std::string_view text) noexcept;

// CBC over whole blocks from a start value of one block. Raise Invalid procedure call for other lengths.
std::string DesCbcEncrypt(const DesKey& key, std::string_view start, std::string_view blocks);
std::string DesCbcDecrypt(const DesKey& key, std::string_view start, std::string_view blocks);

// A random start value, followed by the encrypted text with its padding (PKCS#7).
std::string DesEncrypt(const DesKey& key, std::string_view text);
// The inverse. Raises Invalid procedure call for an impossible length and for wrong padding, the usual effect of a
// wrong key.
std::string DesDecrypt(const DesKey& key, std::string_view cipher);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_CIPHERS_DES56_H_
