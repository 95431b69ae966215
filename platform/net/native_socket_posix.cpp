#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
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

struct ErrorPair {
  int native;
  std::int32_t winsock;
};

// The one place where errors of the sockets become Winsock numbers.
std::int32_t WinsockNumber(int native) noexcept {
  static constexpr ErrorPair kPairs[] = {
      {EAGAIN, 10035},       {EINPROGRESS, 10035},  {EALREADY, 10035},     {EINTR, 10035},         {EACCES, 10013},
      {EPERM, 10013},        {EFAULT, 10014},       {EINVAL, 10022},       {EMFILE, 10024},        {ENFILE, 10024},
      {ENOTSOCK, 10038},     {EAFNOSUPPORT, 10047}, {EADDRINUSE, 10048},   {EADDRNOTAVAIL, 10049}, {ENETDOWN, 10050},
      {ENETUNREACH, 10051},  {ENETRESET, 10052},    {ECONNABORTED, 10053}, {ECONNRESET, 10054},    {EPIPE, 10054},
      {ENOBUFS, 10055},      {ENOMEM, 10055},       {EISCONN, 10056},      {ENOTCONN, 10057},      {ETIMEDOUT, 10060},
      {ECONNREFUSED, 10061}, {EHOSTDOWN, 10064},    {EHOSTUNREACH, 10065}};
  for (const ErrorPair& pair : kPairs) {
    if (pair.native == native) return pair.winsock;
  }
  return 10022;
}

Transferred Outcome(ssize_t count) noexcept {
  if (count < 0) return {0, WinsockNumber(errno)};
  return {static_cast<std::size_t>(count), 0};
}

// 0 when connected, kWouldBlock while under way.
std::int32_t Connect(int socket, const sockaddr_storage& target, socklen_t byteCount) noexcept {
  if (connect(socket, reinterpret_cast<const sockaddr*>(&target), byteCount) == 0) return 0;
  return WinsockNumber(errno);
}

LookupResult Addresses(const std::string& host, int flags) {
  addrinfo hints{};
  hints.ai_flags = flags;
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int failed = getaddrinfo(host.c_str(), nullptr, &hints, &list);
  if (failed != 0) return {{}, failed == EAI_AGAIN ? socket_error::kTryAgain : socket_error::kHostNotFound};
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(list, &freeaddrinfo);
  return AddressesIn(list);
}

bool IsLoopback(const sockaddr_storage& address) noexcept {
  if (address.ss_family == AF_INET6) {
    return IN6_IS_ADDR_LOOPBACK(&reinterpret_cast<const sockaddr_in6*>(&address)->sin6_addr);
  }
  return ntohl(reinterpret_cast<const sockaddr_in*>(&address)->sin_addr.s_addr) >> 24U == IN_LOOPBACKNET;
}

}  // namespace

Connecting StartConnect(const SocketAddress& address, std::uint16_t port) noexcept {
  sockaddr_storage target{};
  std::memcpy(&target, address.bytes.data(), address.byteCount);
  // The port has the same offset in both families.
  reinterpret_cast<sockaddr_in*>(&target)->sin_port = htons(port);
  const int made = socket(target.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (made < 0) return {kNoSocket, WinsockNumber(errno)};
  // A connect to this machine has usually been decided when the first call returns, but only a second call reports it;
  // waiting in the poller would take longer.
  std::int32_t number = Connect(made, target, address.byteCount);
  if (number == socket_error::kWouldBlock && IsLoopback(target)) number = Connect(made, target, address.byteCount);
  if (number == 0 || number == socket_error::kWouldBlock) return {made, number};
  CloseSocket(made);
  return {kNoSocket, number};
}

std::int32_t PendingError(NativeSocket socket) noexcept {
  int native = 0;
  socklen_t size = sizeof native;
  if (getsockopt(static_cast<int>(socket), SOL_SOCKET, SO_ERROR, &native, &size) != 0) native = errno;
  return native == 0 ? 0 : WinsockNumber(native);
}

Transferred Send(NativeSocket socket, std::string_view bytes) noexcept {
  return Outcome(send(static_cast<int>(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

Transferred Receive(NativeSocket socket, char* to, std::size_t room) noexcept {
  return Outcome(recv(static_cast<int>(socket), to, room, 0));
}

void SetReceiveWindow(NativeSocket socket, std::int32_t byteCount) noexcept {
  const int size = byteCount;
  setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
}

void CloseSocket(NativeSocket socket) noexcept { close(static_cast<int>(socket)); }

WakeUp MakeWakeUp() noexcept {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return {};
  return {ends[0], ends[1]};
}

std::optional<SocketAddress> NumericAddress(const std::string& host) {
  const auto found = Addresses(host, AI_NUMERICHOST).addresses;
  return found.empty() ? std::nullopt : std::optional(found.front());
}

LookupResult ResolveHost(const std::string& host) { return Addresses(host, 0); }

}  // namespace oxaqrycln
