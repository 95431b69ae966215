// server.h - the listening socket and the loop that serves every connection in turn, on one thread.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_SERVER_SERVER_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_SERVER_SERVER_H_

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "tools/devserver/protocol/misbehaviour.h"
#include "tools/devserver/server/connection.h"

namespace oxaqrycln::devserver {

struct ServerOptions {
  std::string address = "127.0.0.1";  // numeric, IPv4 or IPv6
  std::uint16_t port = 0;             // 0: any free port
  std::size_t maxConnections = 200;   // beyond it, the client that was idle longest is dropped
  Limits limits;
  Misbehaviour misbehaviour;
};

class Server {
 public:
  // Starts to listen. Raises ServerError when that fails.
  Server(ServerOptions options, Answerer answerer);

  std::uint16_t port() const noexcept;

  // Serves clients until Stop, which may be called before Run, from any thread or from a signal handler.
  void Run();
  void Stop() noexcept;

 private:
  bool Turn();
  TimePoint AcceptTime();
  void Accept(TimePoint now);
  void Add(Socket socket, TimePoint now);
  std::list<Connection>::iterator Quietest();

  const ServerOptions options_;
  const Answerer answerer_;
  Socket listener_;
  Socket wakeReader_;
  Socket wakeWriter_;
  std::list<Connection> connections_;
  TimePoint acceptPausedUntil_{};
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_SERVER_SERVER_H_
