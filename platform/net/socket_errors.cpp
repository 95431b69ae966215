#include "platform/net/socket_errors.h"

#include <algorithm>
#include <iterator>

namespace oxaqrycln {
namespace {

struct Description {
  std::int32_t number;
  std::string_view text;
};
constexpr Description kDescriptions[] = {
    {10013, "Permission denied"},
    {10022, "Invalid argument"},
    {10024, "Too many open files or sockets"},
    {10047, "Address family is not supported"},
    {10048, "Address is already in use"},
    {10049, "Address is not available"},
    {10050, "Network is down"},
    {10051, "Network is unreachable"},
    {10052, "Connection was dropped by the network"},
    {10053, "Connection was aborted by the local machine"},
    {10054, "Connection was reset by the remote side"},
    {10055, "No buffer space is available"},
    {10057, "Socket is not connected"},
    {10060, "Attempt to connect timed out"},
    {10061, "Connection was refused"},
    {10064, "Host is down"},
    {10065, "Host is unreachable"},
    {11001, "Host was not found"},
    {11002, "Host was not found; the name server did not answer"},
};

}  // namespace

std::string_view SocketErrorDescription(std::int32_t number) noexcept {
  const auto* const known = std::ranges::find(kDescriptions, number, &Description::number);
  return known == std::end(kDescriptions) ? "Socket error" : known->text;
}

}  // namespace oxaqrycln
