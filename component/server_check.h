// server_check.h - asks every query server of a list whether it is alive, whatever servers a thread has. For hosts.
#ifndef OXAQRYCLN_COMPONENT_SERVER_CHECK_H_
#define OXAQRYCLN_COMPONENT_SERVER_CHECK_H_

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "component/clsQuery.h"

namespace oxaqrycln {

struct ServerCheck {
  std::string host;
  std::int32_t port = 0;
  bool isAlive = false;
  std::string text;  // the server's answer, or why there is none
  std::chrono::milliseconds duration{0};
};

// The servers of a list as RemoteHosts takes it, in its order; an entry that is not valid is a server that is not
// alive. Each one is sent LiveCheck with the account, session, log and time-out that query has, on a thread of its own,
// up to 16 at once; query itself is left alone. isCancelled is called on those threads while they wait, about ten times
// a second, and true ends them; it must not raise. Raises Out of memory when no thread can be made, and std::bad_alloc.
std::vector<ServerCheck> CheckServers(const clsQuery& query, std::string_view hosts,
                                      const std::function<bool()>& isCancelled);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_SERVER_CHECK_H_
