#include "tools/devserver/server/server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <filesystem>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/tools/devserver/wire_client.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kQuery = "QueryArchive^,^*^,^0^,^0^,^^,^^,^^,^";

TEST(Server, AnswersARequestThatArrivesByteByByte) {
  RunningServer server;
  for (const std::string& command :
       {Request("LiveCheck"), Request(kQuery), Request("UploadFile^,^^,^f^,^6") + "\r\n^^\r\n^^"}) {
    Client client = server.Connect();
    for (const char byte : command) client.Send({&byte, 1});
    EXPECT_THAT(client.Answer(), StartsWith("Status: OK\r\n")) << command;
  }
  EXPECT_EQ(std::filesystem::file_size(server.BlobPath("f")), 6U);
}

TEST(Server, WaitsLongerForMissingFields) {
  RunningServer server(WithLimits({.quiet = std::chrono::milliseconds(10), .shortQuiet = std::chrono::minutes(1)}));
  Client client = server.Send(Request("GetArchiveProperties^,^Mail"));
  EXPECT_FALSE(client.Readable(100));
  client.Send(",^Inbox^");
  EXPECT_THAT(client.Answer(), StartsWith("Status: OK\r\n"));
}

TEST(Server, ServesOtherClientsWhileSomeStall) {
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

TEST(Server, AnswersIncompleteAndInvalidRequestsWithAnError) {
  RunningServer server(WithLimits({.requestByteCount = 1000,
                                   .quiet = std::chrono::milliseconds(20),
                                   .shortQuiet = std::chrono::milliseconds(40),
                                   .idle = std::chrono::milliseconds(60)}));
  const std::pair<std::string, const char*> cases[] = {
      {"GET / HTTP/1.0\r\n\r\n", "Status: The request is not a list of caret-quoted fields\r\n"},
      {Request("Nonsense"), "Status: Unknown command 'Nonsense'\r\n"},
      {Request("GetQueryFormatList^,^Mail"), "Status: GetQueryFormatList takes 2 parameters, not 1\r\n"},
      {"^S1^,^webuser", "Status: The request is not a list of caret-quoted fields\r\n"},
      {"^" + std::string(1000, 'x'), "Status: The request is longer than 1000 bytes\r\n"},
  };
  for (const auto& [bytes, answer] : cases) {
    Client client = server.Send(bytes);
    EXPECT_EQ(client.Answer(), answer);
  }
  Client ending = server.Send("^S1^");
  ending.EndSending();
  EXPECT_THAT(ending.Receive(), HasSubstr("Status: The request contains no command\r\n"));
  EXPECT_EQ(server.Connect().Receive(), "");
}

TEST(Server, WaitsForTheClientToCloseFirst) {
  RunningServer server(WithLimits({.linger = std::chrono::milliseconds(500)}));
  Client client = server.Send(Request(kQuery));
  EXPECT_THAT(client.Answer(), StartsWith("Status: OK\r\n"));
  client.Send("^");
  EXPECT_FALSE(client.Readable(100)) << "a connection carries one request";
  EXPECT_EQ(client.Receive(), "");
  EXPECT_EQ(client.error(), 0);
}

TEST(Server, DropsAnIdleClientWhenAllConnectionsAreTaken) {
  ServerOptions options = WithLimits({.evictable = std::chrono::milliseconds(20)});
  options.maxConnections = 2;
  RunningServer server(options);
  Client first = server.Connect();
  const Client second = server.Connect();
  EXPECT_THAT(server.Ask("LiveCheck"), StartsWith("Status: OK\r\n"));
  EXPECT_EQ(first.Receive(), "");
}

TEST(Server, RefusesAnInvalidAddress) {
  for (const char* address : {"localhost", "", "256.0.0.1", "192.0.2.1"}) {  // the last one is of no machine
    ServerOptions options;
    options.address = address;
    EXPECT_THROW(Server(options, nullptr), ServerError) << address;
  }
}

TEST(Misbehaviour, BreaksTheAnswerAsItsModeSays) {
  const std::string whole = RunningServer().Ask("GetChannels");
  const std::string header = "TotalBytes:" + std::to_string(whole.size()) + "\r\n";
  const std::tuple<const char*, std::string, int> cases[] = {
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
  for (const auto& [mode, bytes, error] : cases) {
    RunningServer server(WithLimits({.linger = std::chrono::milliseconds(10)}), mode);
    Client client = server.Send(Request("GetChannels"));
    EXPECT_EQ(client.Receive(), bytes) << mode;
    EXPECT_EQ(client.error(), error) << mode;
  }
}

TEST(Misbehaviour, SendsNothingInItsSilentModes) {
  for (const char* mode : {"silent", "never-read", "delay:5000"}) {
    RunningServer server({}, mode);
    Client client = server.Send(Request("GetChannels"));
    EXPECT_FALSE(client.Readable(50)) << mode;
  }
  RunningServer server({}, "never-read");
  EXPECT_LT(server.Connect().Fill(), kFillByteCount);
}

TEST(Misbehaviour, RefusesUnknownModes) {
  for (const char* text :
       {"", "foo", "delay", "delay:", "delay:-1", "delay:1s", "cut:99999999999", "silent:1", "count"}) {
    EXPECT_THROW(ParseMisbehaviour(text), ServerError) << text;
  }
}

std::ptrdiff_t OpenDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return std::distance(begin(entries), end(entries));
}

TEST(Server, SurvivesRandomBytesAndLeaksNoDescriptor) {
  ServerOptions options;
  options.limits.idle = options.limits.shortQuiet = std::chrono::milliseconds(200);
  options.limits.linger = std::chrono::minutes(1);
  RunningServer server(options);
  std::mt19937 random(4711);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  const std::string document = "^,^Finance^,^Orders^,^1005^,^^,^";
  const std::vector<std::string> requests = {
      Request(kQuery),
      Request("GetQueryFormatList^,^Mail^,^Inbox"),
      Request("GetSegments" + document + "delivery^,^<^,^>^,^_^,^^,^1"),
      Request("GetSegmentMultiTIF^,^Mail^,^Fax^,^1003^,^^,^1,2,3^,^"),
      Request("GetSegmentData" + document + "1^,^"),
      Request("TransferBLOB^,^\\a.imp"),
      Request("UploadFile^,^^,^a.imp^,^42") + "\r\n@DB,$(#Finance)\\Orders\r\n@FOLDER,FT:T\r\n",
      Request("CreateDocument^,^a.imp"),
      Request("EditDocument^,^a.imp^,^1005,1"),
      Request("WriteNote" + document + "note^,^##"),
      Request("DeleteDocument^,^B\xFCro^,^Protokolle^,^1009^,^")};
  const std::ptrdiff_t before = OpenDescriptors();
  for (int round = 0; round < 600; ++round) {
    Client client = server.Connect();
    std::string bytes = requests[below(requests.size())];
    for (std::size_t change = below(8); change > 0; --change)
      bytes[below(bytes.size())] = static_cast<char>(below(256));
    if (below(4) == 0) bytes.resize(below(bytes.size()));
    if (below(10) == 0) bytes.insert(below(bytes.size() + 1), below(200000), "^,^*\0("[below(6)]);
    client.Send(bytes);
    if (below(3) == 0) client.ResetOnClose();
    if (below(3) == 0) client.Receive(below(100) == 0 ? 10 : 0);
  }
  EXPECT_THAT(server.Ask("LiveCheck"), StartsWith("Status: OK\r\n"));
  // All these clients have closed, so the server must have closed its ends as well.
  for (int wait = 0; wait < 100 && OpenDescriptors() > before; ++wait) poll(nullptr, 0, 50);
  EXPECT_LE(OpenDescriptors(), before);
}

}  // namespace
}  // namespace oxaqrycln::devserver
