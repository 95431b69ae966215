// address_list.h - reads the list of getaddrinfo, which the systems declare in headers of their own.
#ifndef OXAQRYCLN_PLATFORM_NET_ADDRESS_LIST_H_
#define OXAQRYCLN_PLATFORM_NET_ADDRESS_LIST_H_

#include <cstdint>
#include <cstring>

#include "platform/net/socket_address.h"
#include "platform/net/socket_errors.h"

namespace oxaqrycln {

template <typename AddressInfo>
LookupResult AddressesIn(const AddressInfo* list) {
  LookupResult result;
  for (const AddressInfo* each = list; each != nullptr; each = each->ai_next) {
    SocketAddress address;
    if (each->ai_addrlen > address.bytes.size()) continue;
    address.byteCount = static_cast<std::uint8_t>(each->ai_addrlen);
    std::memcpy(address.bytes.data(), each->ai_addr, each->ai_addrlen);
    result.addresses.push_back(address);
  }
  if (result.addresses.empty()) result.error = socket_error::kHostNotFound;
  return result;
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_NET_ADDRESS_LIST_H_
