// canned_server.h - a query server in a process and on a processor of its own. A request whose command part contains
// "rows:N" is answered with a hit list of N rows. Ends with its owner.
#ifndef OXAQRYCLN_BENCH_CANNED_SERVER_H_
#define OXAQRYCLN_BENCH_CANNED_SERVER_H_

#include <cstdint>

namespace oxaqrycln::bench {

class CannedServer {
 public:
  // Forks, so it must be made before any thread.
  CannedServer();
  ~CannedServer();
  CannedServer(const CannedServer&) = delete;
  CannedServer& operator=(const CannedServer&) = delete;

  std::uint16_t port() const noexcept { return port_; }

 private:
  std::uint16_t port_ = 0;
  int process_ = -1;
};

// The one server of the program.
CannedServer& TheServer();

// Keeps the calling process on one processor, where there are two and more.
void StayOnProcessor(int processor);

}  // namespace oxaqrycln::bench

#endif  // OXAQRYCLN_BENCH_CANNED_SERVER_H_
