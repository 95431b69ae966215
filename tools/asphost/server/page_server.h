// page_server.h - serves a site over HTTP on the loopback address, with a number of threads.
// Each thread is a single-threaded apartment that takes a connection, answers its request and takes the next one;
// visitors who come meanwhile wait in the system's queue.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SERVER_PAGE_SERVER_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SERVER_PAGE_SERVER_H_

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <cstddef>
#include <functional>
#include <mutex>

#include "tools/asphost/server/http_connection.h"

namespace oxaqrycln::asphost {

class PageServer {
 public:
  // Listens at once; port 0 takes any free one. Throws std::runtime_error when the port cannot be had.
  // makeAnswer is called on each thread; what it returns is destroyed there.
  PageServer(int port, const ConnectionLimits& limits, std::function<AnswerFunction()> makeAnswer);

  int port() const { return acceptor_.local_endpoint().port(); }
  // Serves until Stop is called, from any thread, and the pages that were running have ended.
  void Run(std::size_t threadCount);
  void Stop();

 private:
  void ServeOnThread();

  boost::asio::io_context context_;
  boost::asio::ip::tcp::acceptor acceptor_;
  std::mutex acceptorMutex_;
  std::atomic<bool> isStopping_ = false;
  const ConnectionLimits limits_;
  const std::function<AnswerFunction()> makeAnswer_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SERVER_PAGE_SERVER_H_
