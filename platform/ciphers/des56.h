// des56.h - single DES with a key of 56 bits, in CBC mode. Broken long ago: it hides texts from a glance, not from an
// attacker; kept because pages hold texts that were encrypted with it.
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

// A random start value and the text, padded (PKCS#7), behind it.
std::string DesEncrypt(const DesKey& key, std::string_view text);
// The inverse. Raises Invalid procedure call for what cannot have been encrypted so: another length, wrong padding,
// which is what a wrong key mostly shows as.
std::string DesDecrypt(const DesKey& key, std::string_view cipher);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_CIPHERS_DES56_H_
