// scripted_server.h - a query server for tests: a real TCP server on loopback that does what a script says.
#ifndef OXAQRYCLN_TESTS_SUPPORT_SCRIPTED_SERVER_H_
#define OXAQRYCLN_TESTS_SUPPORT_SCRIPTED_SERVER_H_

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/net/native_socket.h"

namespace oxaqrycln::testing {

// The header line and the text, as a sound server sends them.
std::string Framed(std::string_view text);
// A whole sound answer: "Status: OK" and the lines.
std::string Answer(const std::vector<std::string>& lines);

class ScriptedServer;

// The server's side of one connection. Every wait ends with the server's end, and after ten seconds.
class Peer {
 public:
  Peer(NativeSocket socket, ScriptedServer& server) noexcept : socket_(socket), server_(server) {}

  // What has arrived up to a closing caret; "" when the client goes first.
  std::string ReadRequest();
  // The next bytes, exactly so many; fewer when the client goes first.
  std::string ReadBytes(std::size_t byteCount);
  // False when the client is gone.
  bool Send(std::string_view bytes);
  // Until the client has closed its side.
  void WaitForClose();
  // Until the script's server ends or the time is over.
  void Pause(int milliseconds);
  // Ends the connection with a reset instead of a close.
  void Reset();

 private:
  bool WaitReadable() const;
  NativeSocket socket_;
  ScriptedServer& server_;
};

class ScriptedServer {
 public:
  using Script = std::function<void(Peer&)>;

  // Every connection runs the script, one after the other; then it is closed.
  explicit ScriptedServer(Script script);
  // Connection k runs scripts[k], later ones the last script.
  explicit ScriptedServer(std::vector<Script> scripts);
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  // Reads a request, sends the bytes after a pause, and waits for the client to close.
  static Script Replies(std::string bytes, int pauseMilliseconds = 0);
  // Reads a request and never answers.
  static Script Silent();

  std::uint16_t port() const noexcept { return port_; }
  // The entry for RemoteHosts.
  std::string Host() const { return "127.0.0.1," + std::to_string(port_); }
  int Connections() const noexcept { return connections_; }
  std::vector<std::string> Requests();

 private:
  friend class Peer;
  void Serve();
  std::vector<Script> scripts_;
  std::uint16_t port_ = 0;
  NativeSocket listener_;
  WakeUp stop_;
  std::atomic<int> connections_{0};
  std::mutex mutex_;
  std::vector<std::string> requests_;
  std::thread thread_;
};

// A loopback port on which nothing listens.
std::uint16_t UnusedPort();

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_SCRIPTED_SERVER_H_
