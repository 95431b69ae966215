// socket_address.h - the address of a host on the network, and the lookup of a host name.
#ifndef OXAQRYCLN_PLATFORM_NET_SOCKET_ADDRESS_H_
#define OXAQRYCLN_PLATFORM_NET_SOCKET_ADDRESS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace oxaqrycln {

// An IPv4 or IPv6 address in the system's form, without a port.
struct SocketAddress {
  alignas(8) std::array<std::byte, 28> bytes{};
  std::uint8_t byteCount = 0;
};

struct LookupResult {
  std::vector<SocketAddress> addresses;
  std::int32_t error = 0;  // a Winsock number when there is no address
};

// Finds the addresses of a host name; may take long. Called on a thread of its own.
using Resolver = std::function<LookupResult(const std::string& host)>;

// The address of a numeric text, nothing for a name.
std::optional<SocketAddress> NumericAddress(const std::string& host);
// The system's look-up.
LookupResult ResolveHost(const std::string& host);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_NET_SOCKET_ADDRESS_H_
