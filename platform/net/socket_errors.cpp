#include "platform/net/socket_errors.h"

namespace oxaqrycln {

std::string_view SocketErrorDescription(std::int32_t number) noexcept {
  switch (number) {
    case 10013:
      return "Permission denied";
    case 10022:
      return "Invalid argument";
    case 10024:
      return "Too many open files or sockets";
    case 10047:
      return "Address family is not supported";
    case 10048:
      return "Address is already in use";
    case 10049:
      return "Address is not available";
    case 10050:
      return "Network is down";
    case 10051:
      return "Network is unreachable";
    case 10052:
      return "Connection was dropped by the network";
    case 10053:
      return "Connection was aborted by the local machine";
    case 10054:
      return "Connection was reset by the remote side";
    case 10055:
      return "No buffer space is available";
    case 10057:
      return "Socket is not connected";
    case 10060:
      return "Attempt to connect timed out";
    case 10061:
      return "Connection was refused";
    case 10064:
      return "Host is down";
    case 10065:
      return "Host is unreachable";
    case 11001:
      return "Host was not found";
    case 11002:
      return "Host was not found; the name server did not answer";
    default:
      return "Socket error";
  }
}

}  // namespace oxaqrycln
