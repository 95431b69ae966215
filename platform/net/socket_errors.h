// socket_errors.h - errors of sockets: Winsock numbers on every platform, and their descriptions.
#ifndef OXAQRYCLN_PLATFORM_NET_SOCKET_ERRORS_H_
#define OXAQRYCLN_PLATFORM_NET_SOCKET_ERRORS_H_

#include <cstdint>
#include <string_view>

namespace oxaqrycln {

// The numbers that the component itself uses.
namespace socket_error {
inline constexpr std::int32_t kWouldBlock = 10035;
inline constexpr std::int32_t kAddressNotAvailable = 10049;
inline constexpr std::int32_t kConnectionReset = 10054;
inline constexpr std::int32_t kNoBufferSpace = 10055;
inline constexpr std::int32_t kConnectTimedOut = 10060;
inline constexpr std::int32_t kHostNotFound = 11001;
inline constexpr std::int32_t kTryAgain = 11002;
}  // namespace socket_error

// An error of the connection, not one of this program such as a file that cannot be written.
constexpr bool IsSocketError(std::int32_t number) noexcept { return number >= 10000 && number < 12000; }
// The description of a number; "Socket error" for an unknown one.
std::string_view SocketErrorDescription(std::int32_t number) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_NET_SOCKET_ERRORS_H_
