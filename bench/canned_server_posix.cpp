#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "bench/answers.h"
#include "bench/canned_server.h"

namespace oxaqrycln::bench {
namespace {

// The number that follows a word in the text; -1 without the word.
long NumberBehind(std::string_view text, std::string_view word) {
  const std::size_t at = text.find(word);
  return at == std::string_view::npos ? -1 : std::atol(text.data() + at + word.size());
}

// The answer to the words of a request: "rows:N" a hit list, "segments:N" segments, "blob-N" so many bytes and nothing
// else.
const std::string& AnswerTo(std::string_view request) {
  static std::map<std::pair<char, long>, std::string> answers;
  if (const long bytes = NumberBehind(request, "blob-"); bytes >= 0) {
    std::string& answer = answers[{'b', bytes}];
    if (answer.empty()) answer.assign(static_cast<std::size_t>(bytes), 'b');
    return answer;
  }
  if (const long segments = NumberBehind(request, "segments:"); segments >= 0) {
    std::string& answer = answers[{'s', segments}];
    if (answer.empty()) answer = Framed(Segments(static_cast<int>(segments)));
    return answer;
  }
  const long rows = std::max(0L, NumberBehind(request, "rows:"));
  std::string& answer = answers[{'r', rows}];
  if (answer.empty()) answer = Framed(HitList(static_cast<int>(rows)));
  return answer;
}

// The outcome of a call on a non-blocking socket once there is one. Polls for a while before it sleeps, because the
// time that an idle processor takes to wake up must not be measured; on a virtual machine it can exceed everything
// else.
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

// Receives the bytes of a file that follow a request.
void TakeFile(int connection, std::string_view request, std::span<char> buffer) {
  const std::size_t lineEnd = request.find("^\r\n");
  if (lineEnd == std::string_view::npos) return;
  long missing = std::atol(request.data() + request.rfind('^', lineEnd - 1) + 1);
  missing -= static_cast<long>(request.size() - lineEnd - 3);
  while (missing > 0) {
    const ssize_t count = Insist(connection, POLLIN, [&] { return recv(connection, buffer.data(), buffer.size(), 0); });
    if (count <= 0) return;
    missing -= count;
  }
}

void Answer(int connection) {
  static std::array<char, 1U << 20U> buffer;  // NOLINT: filled by recv
  const ssize_t count =
      Insist(connection, POLLIN, [&] { return recv(connection, buffer.data(), buffer.size() - 1, 0); });
  if (count <= 0) return;
  const std::string request(buffer.data(), static_cast<std::size_t>(count));
  TakeFile(connection, request, buffer);
  std::string_view rest = AnswerTo(request);
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
