#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/answers.h"
#include "bench/canned_server.h"

namespace oxaqrycln::bench {
namespace {

const std::string& AnswerTo(std::string_view request) {
  static std::map<int, std::string> answers;
  const std::size_t at = request.find("rows:");
  const int rows = at == std::string_view::npos ? 0 : std::atoi(request.data() + at + 5);
  std::string& answer = answers[rows];
  if (answer.empty()) answer = Framed(HitList(rows));
  return answer;
}

// The outcome of a call on a non-blocking socket once there is one. Asks again for a while before it sleeps: how long
// an idle processor takes to wake up is not to be measured, and on a virtual machine it can be longer than all else.
template <typename Call>
ssize_t Insist(int socket, short event, Call&& call) {
  constexpr int kTriesBeforeSleep = 1000;
  for (int tries = 1;; ++tries) {
    const ssize_t count = call();
    if (count >= 0 || (errno != EAGAIN && errno != EINTR)) return count;
    pollfd wanted{socket, event, 0};
    if (tries % kTriesBeforeSleep == 0) poll(&wanted, 1, -1);
  }
}

void Answer(int connection) {
  std::array<char, 65536> buffer;  // NOLINT: filled by recv
  const ssize_t count =
      Insist(connection, POLLIN, [&] { return recv(connection, buffer.data(), buffer.size() - 1, 0); });
  if (count <= 0) return;
  buffer[static_cast<std::size_t>(count)] = 0;
  std::string_view rest = AnswerTo({buffer.data(), static_cast<std::size_t>(count)});
  while (!rest.empty()) {
    const ssize_t sent =
        Insist(connection, POLLOUT, [&] { return send(connection, rest.data(), rest.size(), MSG_NOSIGNAL); });
    if (sent <= 0) return;
    rest.remove_prefix(static_cast<std::size_t>(sent));
  }
  while (Insist(connection, POLLIN, [&] { return recv(connection, buffer.data(), buffer.size(), 0); }) > 0) {
  }
}

[[noreturn]] void Serve(int listener) {
  StayOnProcessor(1);
  for (;;) {
    const auto accepted = Insist(listener, POLLIN, [&] { return accept4(listener, nullptr, nullptr, SOCK_NONBLOCK); });
    if (accepted < 0) continue;
    Answer(static_cast<int>(accepted));
    close(static_cast<int>(accepted));
  }
}

}  // namespace

CannedServer::CannedServer() {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 64) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("the canned server cannot listen");
  }
  port_ = ntohs(address.sin_port);
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Serve(listener);
  }
  close(listener);
}

CannedServer::~CannedServer() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

CannedServer& TheServer() {
  static CannedServer server;
  return server;
}

void StayOnProcessor(int processor) {
  cpu_set_t set;
  CPU_ZERO(&set);
  CPU_SET(static_cast<unsigned>(processor), &set);
  sched_setaffinity(0, sizeof set, &set);
}

}  // namespace oxaqrycln::bench
