#include "tools/devserver/server.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "component/text_helpers.h"
#include "tools/devserver/errors.h"
#include "tools/devserver/sample_archive.h"
#include "tools/devserver/service.h"

namespace oxaqrycln::devserver {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// Longer than anything here takes; reached only when a test fails.
constexpr int kPatienceMilliseconds = 10000;

// More than the buffers of a loopback connection hold.
constexpr std::size_t kFillByteCount = 64U << 20U;

class Client {
 public:
  explicit Client(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) error_ = errno;
  }
  void Send(std::string_view bytes) {
    if (send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) error_ = errno;
  }
  // Sends until the connection takes no more for a while, at most kFillByteCount bytes.
  std::size_t Fill() const {
    const std::string bytes(65536, 'x');
    std::size_t byteCount = 0;
    pollfd polled{socket_.get(), POLLOUT, 0};
    while (byteCount < kFillByteCount && poll(&polled, 1, 200) > 0) {
      const ssize_t count = send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (count > 0) byteCount += static_cast<std::size_t>(count);
    }
    return byteCount;
  }
  void EndSending() const { shutdown(socket_.get(), SHUT_WR); }
  void ResetOnClose() const { socket_.ResetOnClose(); }
  bool Readable(int milliseconds) const {
    pollfd polled{socket_.get(), POLLIN, 0};
    return poll(&polled, 1, milliseconds) > 0;
  }
  // Reads up to byteCount bytes, or to the end; remembers the error that ended it.
  std::string Receive(std::size_t byteCount = std::string::npos) {
    std::string bytes;
    while (bytes.size() < byteCount && Readable(kPatienceMilliseconds)) {
      char buffer[4096];
      const ssize_t count = recv(socket_.get(), buffer, std::min(sizeof buffer, byteCount - bytes.size()), 0);
      if (count < 0) error_ = errno;
      if (count <= 0) break;
      bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
  }
  // Reads an answer as its header announces it, and gives it without the header.
  std::string Answer() {
    std::string header;
    while (!header.ends_with("\r\n")) {
      const std::string byte = Receive(1);
      if (byte.empty()) return "no answer: " + header;
      header += byte;
    }
    return Receive(std::stoul(header.substr(11)));
  }
  int error() const { return error_; }

 private:
  Socket socket_;
  int error_ = 0;
};

std::string Request(const std::string& command) {
  return "^S1^,^webuser^,^" + Encode("secret") + "^,^" + command + "^";
}

class RunningServer {
 public:
  explicit RunningServer(ServerOptions options = {}, const std::string& misbehaviour = "none")
      : service_(OpenArchive("", 90), {{"webuser", "secret"}}),
        server_(
            [&] {
              options.misbehaviour = ParseMisbehaviour(misbehaviour);
              return options;
            }(),
            [this](std::string_view request) { return service_.Answer(request); }),
        thread_([this] { server_.Run(); }) {}
  ~RunningServer() {
    server_.Stop();
    thread_.join();
  }
  Client Connect() { return Client(server_.port()); }
  std::string Ask(const std::string& command) {
    Client client = Connect();
    client.Send(Request(command));
    return client.Answer();
  }

 private:
  Service service_;
  Server server_;
  std::thread thread_;
};

const std::string kQuery = "QueryArchive^,^*^,^0^,^0^,^^,^^,^^,^";

TEST(Server, AnswersARequestThatComesByteByByte) {
  RunningServer server;
  for (const std::string& command :
       {std::string("LiveCheck"), std::string("GetArchiveProperties^,^Mail^,^Inbox"), kQuery}) {
    Client client = server.Connect();
    for (const char byte : Request(command)) client.Send({&byte, 1});
    EXPECT_THAT(client.Answer(), StartsWith("Status: OK\r\n")) << command;
  }
}

TEST(Server, WaitsLongerForFieldsThatMayStillCome) {
  ServerOptions options;
  options.limits.quiet = std::chrono::milliseconds(10);
  options.limits.shortQuiet = std::chrono::minutes(1);
  RunningServer server(options);
  Client client = server.Connect();
  client.Send(Request("GetArchiveProperties^,^Mail"));
  EXPECT_FALSE(client.Readable(200));
  client.Send(",^Inbox^");
  EXPECT_THAT(client.Answer(), StartsWith("Status: OK\r\n"));
}

TEST(Server, ServesOthersBesideClientsThatStall) {
  RunningServer server;
  std::vector<Client> stalled;
  for (int count = 0; count < 20; ++count) {
    stalled.push_back(server.Connect());
    if (count % 2 == 0) stalled.back().Send("^S1^,^webus");
  }
  EXPECT_THAT(server.Ask(kQuery), StartsWith("Status: OK\r\n90\r\n"));
  stalled[0].Send(Request("LiveCheck").substr(11));
  EXPECT_THAT(stalled[0].Answer(), StartsWith("Status: OK\r\n"));
}

TEST(Server, EndsRequestsThatNeverBecomeWhole) {
  ServerOptions options;
  options.limits.shortQuiet = std::chrono::milliseconds(300);
  options.limits.idle = std::chrono::milliseconds(400);
  options.limits.requestByteCount = 1000;
  RunningServer server(options);
  struct Case {
    std::string bytes;
    const char* answer;
  };
  const Case cases[] = {
      {"GET / HTTP/1.0\r\n\r\n", "Status: The request is not a list of fields in carets\r\n"},
      {Request("Nonsense"), "Status: Unknown command 'Nonsense'\r\n"},
      {Request("GetQueryFormatList^,^Mail"), "Status: GetQueryFormatList takes 2 parameters, not 1\r\n"},
      {"^S1^,^webuser", "Status: The request is not a list of fields in carets\r\n"},
      {"^" + std::string(1000, 'x'), "Status: The request is longer than 1000 bytes\r\n"},
  };
  for (const Case& row : cases) {
    Client client = server.Connect();
    client.Send(row.bytes);
    EXPECT_EQ(client.Answer(), row.answer);
  }
  Client ending = server.Connect();
  ending.Send("^S1^");
  ending.EndSending();
  EXPECT_THAT(ending.Receive(), HasSubstr("Status: The request holds no command\r\n"));
  Client dumb = server.Connect();
  EXPECT_EQ(dumb.Receive(), "");
}

TEST(Server, LeavesTheClosingToTheClientForAWhile) {
  ServerOptions options;
  options.limits.linger = std::chrono::milliseconds(500);
  RunningServer server(options);
  Client client = server.Connect();
  client.Send(Request(kQuery));
  EXPECT_THAT(client.Answer(), StartsWith("Status: OK\r\n"));
  client.Send("^");
  EXPECT_FALSE(client.Readable(100)) << "a connection carries one request";
  EXPECT_EQ(client.Receive(), "");
  EXPECT_EQ(client.error(), 0);
}

TEST(Server, MakesRoomWhenAllConnectionsStall) {
  ServerOptions options;
  options.maxConnections = 2;
  RunningServer server(options);
  const Client first = server.Connect();
  const Client second = server.Connect();
  EXPECT_THAT(server.Ask("LiveCheck"), StartsWith("Status: OK\r\n"));
}

TEST(Server, SaysThatAnAddressCannotBeListenedOn) {
  ServerOptions options;
  options.address = "localhost or so";
  EXPECT_THROW(Server(options, nullptr), ServerError);
}

TEST(Misbehaviour, BreaksTheAnswerInTheWayAskedFor) {
  const std::string whole = [] {
    RunningServer server;
    return server.Ask("GetChannels");
  }();
  const std::string header = "TotalBytes:" + std::to_string(whole.size()) + "\r\n";
  struct Case {
    const char* mode;
    std::string bytes;
    int error;
  };
  const Case cases[] = {
      {"none", header + whole, 0},
      {"cut:20", (header + whole).substr(0, 20), 0},
      {"cut:0", "", 0},
      {"reset:20", (header + whole).substr(0, 20), ECONNRESET},
      {"refuse", "", ECONNRESET},
      {"bytewise", header + whole, 0},
      {"bytewise:1", header + whole, 0},
      {"count:-5", "TotalBytes:-5\r\n" + whole, 0},
      {"count:", "TotalBytes:\r\n" + whole, 0},
      {"no-header", whole, 0},
      {"delay:50", header + whole, 0},
  };
  for (const Case& row : cases) {
    ServerOptions options;
    options.limits.linger = std::chrono::milliseconds(50);
    RunningServer server(options, row.mode);
    Client client = server.Connect();
    client.Send(Request("GetChannels"));
    EXPECT_EQ(client.Receive(), row.bytes) << row.mode;
    EXPECT_EQ(client.error(), row.error) << row.mode;
  }
}

TEST(Misbehaviour, KeepsClientsWaiting) {
  for (const char* mode : {"silent", "never-read", "delay:5000"}) {
    RunningServer server({}, mode);
    Client client = server.Connect();
    client.Send(Request("GetChannels"));
    EXPECT_FALSE(client.Readable(300)) << mode;
  }
  RunningServer server({}, "never-read");
  EXPECT_LT(server.Connect().Fill(), kFillByteCount);
}

TEST(Misbehaviour, MeetsEachNthConnectionOnly) {
  ServerOptions options;
  options.misbehaveEvery = 3;
  RunningServer server(options, "no-header");
  std::string seen;
  for (int count = 0; count < 6; ++count) {
    Client client = server.Connect();
    client.Send(Request("GetChannels"));
    seen += client.Receive(6) == "Status" ? "x" : "-";
  }
  EXPECT_EQ(seen, "--x--x");
}

TEST(Misbehaviour, RefusesModesItDoesNotKnow) {
  for (const char* text :
       {"", "foo", "delay", "delay:", "delay:-1", "delay:1s", "cut:99999999999", "silent:1", "count"}) {
    EXPECT_THROW(ParseMisbehaviour(text), ServerError) << text;
  }
}

std::ptrdiff_t OpenDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return std::distance(begin(entries), end(entries));
}

TEST(Server, SurvivesWhateverIsSentToIt) {
  ServerOptions options;
  options.limits.idle = options.limits.shortQuiet = std::chrono::milliseconds(200);
  options.limits.linger = std::chrono::minutes(1);
  RunningServer server(options);
  std::mt19937 random(4711);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  const std::ptrdiff_t before = OpenDescriptors();
  for (int round = 0; round < 300; ++round) {
    Client client = server.Connect();
    std::string bytes = below(2) == 0 ? Request(kQuery) : Request("GetQueryFormatList^,^Mail^,^Inbox");
    for (std::size_t change = below(8); change > 0; --change)
      bytes[below(bytes.size())] = static_cast<char>(below(256));
    if (below(4) == 0) bytes.resize(below(bytes.size()));
    if (below(10) == 0) bytes.insert(below(bytes.size() + 1), below(200000), "^,^*\0("[below(6)]);
    client.Send(bytes);
    if (below(3) == 0) client.ResetOnClose();
    if (below(3) == 0) client.Receive(below(100) == 0 ? 10 : 0);
  }
  EXPECT_THAT(server.Ask("LiveCheck"), StartsWith("Status: OK\r\n"));
  // All of these clients are gone, so the server must have closed its ends as well.
  for (int wait = 0; wait < 100 && OpenDescriptors() > before; ++wait) poll(nullptr, 0, 50);
  EXPECT_LE(OpenDescriptors(), before);
}

}  // namespace
}  // namespace oxaqrycln::devserver
