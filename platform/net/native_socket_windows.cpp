#include <winsock2.h>
// The other headers of the system follow winsock2.h.
#include <ws2tcpip.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "platform/net/address_list.h"
#include "platform/net/native_socket.h"
#include "platform/net/socket_address.h"
#include "platform/net/socket_errors.h"

namespace oxaqrycln {
namespace {

// Winsock is started by the first use and stays until the process ends.
void StartWinsock() noexcept {
  [[maybe_unused]] static const int failed = [] {
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data);
  }();
}

SOCKET Native(NativeSocket socket) noexcept { return static_cast<SOCKET>(socket); }

NativeSocket MakeSocket(int family) noexcept {
  StartWinsock();
  const SOCKET made =
      WSASocketW(family, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
  if (made == INVALID_SOCKET) return kNoSocket;
  // Lets IPv4 addresses in their IPv6 spelling be reached, as on other systems.
  const DWORD off = 0;
  if (family == AF_INET6) {
    setsockopt(made, IPPROTO_IPV6, IPV6_V6ONLY, reinterpret_cast<const char*>(&off), sizeof off);
  }
  return static_cast<NativeSocket>(made);
}

bool StopBlocking(NativeSocket socket) noexcept {
  u_long on = 1;
  return ioctlsocket(Native(socket), static_cast<long>(FIONBIO), &on) == 0;
}

Transferred Outcome(int count) noexcept {
  if (count < 0) return {0, WSAGetLastError()};
  return {static_cast<std::size_t>(count), 0};
}

// The length of one send or receive.
int Length(std::size_t byteCount) noexcept {
  constexpr std::size_t kMost = std::size_t{1} << 30U;
  return static_cast<int>(byteCount < kMost ? byteCount : kMost);
}

LookupResult Addresses(const std::string& host, int flags) {
  StartWinsock();
  addrinfo hints{};
  hints.ai_flags = flags;
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int failed = getaddrinfo(host.c_str(), nullptr, &hints, &list);
  if (failed != 0) return {{}, failed == WSATRY_AGAIN ? socket_error::kTryAgain : socket_error::kHostNotFound};
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(list, &freeaddrinfo);
  return AddressesIn(list);
}

sockaddr* Generic(sockaddr_in& address) noexcept { return reinterpret_cast<sockaddr*>(&address); }

// Connects the two sockets over the loopback interface, and accepts no one else: the port of the peer must be the one
// of wakes. Returns the accepted end, kNoSocket on failure.
NativeSocket AcceptOwn(NativeSocket listener, NativeSocket wakes) noexcept {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof address;
  if (bind(Native(listener), Generic(address), size) != 0 || listen(Native(listener), 1) != 0 ||
      getsockname(Native(listener), Generic(address), &size) != 0 ||
      connect(Native(wakes), Generic(address), size) != 0) {
    return kNoSocket;
  }
  sockaddr_in own{};
  sockaddr_in peer{};
  int peerSize = sizeof peer;
  const SOCKET accepted = accept(Native(listener), Generic(peer), &peerSize);
  if (accepted == INVALID_SOCKET) return kNoSocket;
  const auto waits = static_cast<NativeSocket>(accepted);
  if (getsockname(Native(wakes), Generic(own), &size) == 0 && own.sin_port == peer.sin_port) return waits;
  CloseSocket(waits);
  return kNoSocket;
}

}  // namespace

Connecting StartConnect(const SocketAddress& address, std::uint16_t port) noexcept {
  sockaddr_storage target{};
  std::memcpy(&target, address.bytes.data(), address.byteCount);
  // The port has the same offset in both families.
  reinterpret_cast<sockaddr_in*>(&target)->sin_port = htons(port);
  const NativeSocket made = MakeSocket(target.ss_family);
  if (made == kNoSocket) return {kNoSocket, WSAGetLastError()};
  std::int32_t number = 0;
  if (!StopBlocking(made) ||
      connect(Native(made), reinterpret_cast<const sockaddr*>(&target), address.byteCount) != 0) {
    number = WSAGetLastError();
  }
  if (number == 0 || number == socket_error::kWouldBlock) return {made, number};
  CloseSocket(made);
  return {kNoSocket, number};
}

std::int32_t PendingError(NativeSocket socket) noexcept {
  int number = 0;
  int size = sizeof number;
  if (getsockopt(Native(socket), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&number), &size) != 0) {
    return WSAGetLastError();
  }
  return number;
}

Transferred Send(NativeSocket socket, std::string_view bytes) noexcept {
  return Outcome(send(Native(socket), bytes.data(), Length(bytes.size()), 0));
}

Transferred Receive(NativeSocket socket, char* to, std::size_t room) noexcept {
  return Outcome(recv(Native(socket), to, Length(room), 0));
}

void SetReceiveWindow(NativeSocket socket, std::int32_t byteCount) noexcept {
  setsockopt(Native(socket), SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&byteCount), sizeof byteCount);
}

void CloseSocket(NativeSocket socket) noexcept { closesocket(Native(socket)); }

WakeUp MakeWakeUp() noexcept {
  const NativeSocket listener = MakeSocket(AF_INET);
  const NativeSocket wakes = MakeSocket(AF_INET);
  NativeSocket waits = kNoSocket;
  if (listener != kNoSocket && wakes != kNoSocket) waits = AcceptOwn(listener, wakes);
  if (listener != kNoSocket) CloseSocket(listener);
  if (waits != kNoSocket) return {waits, wakes};
  if (wakes != kNoSocket) CloseSocket(wakes);
  return {};
}

std::optional<SocketAddress> NumericAddress(const std::string& host) {
  const auto found = Addresses(host, AI_NUMERICHOST).addresses;
  return found.empty() ? std::nullopt : std::optional(found.front());
}

LookupResult ResolveHost(const std::string& host) { return Addresses(host, 0); }

}  // namespace oxaqrycln
