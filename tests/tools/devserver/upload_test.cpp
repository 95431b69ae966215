#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/tools/devserver/fetched_content.h"

namespace oxaqrycln::devserver {
namespace {

std::vector<std::string> FilesOf(const RunningServer& server) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(server.BlobPath(""))) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

// Waits until only these files are left; whether that happened.
bool HoldsOnly(const RunningServer& server, const std::vector<std::string>& names) {
  for (int wait = 0; wait < 200 && FilesOf(server) != names; ++wait) poll(nullptr, 0, 50);
  return FilesOf(server) == names;
}

TEST(Upload, StoresExactlyTheAnnouncedBytes) {
  const RunningServer server;
  std::string bytes(3'000'000, '\0');
  for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = static_cast<char>(at * 13 + at / 253);
  for (const std::string& body : {bytes, std::string("\r\n^,^x^\r\n"), std::string()}) {
    const std::string size = std::to_string(body.size());
    EXPECT_EQ(server.Ask("UploadFile^,^^,^a b.bin^,^" + size, "\r\n" + body),
              "Status: OK\r\n" + size + "\r\na b.bin\r\n");
    EXPECT_EQ(Content(server.BlobPath("a b.bin")), body);
  }
  // Further bytes are not part of the file.
  server.Ask("UploadFile^,^^,^a b.bin^,^5", "\r\nfirstand more");
  EXPECT_EQ(Content(server.BlobPath("a b.bin")), "first");
  EXPECT_TRUE(HoldsOnly(server, {"a b.bin"}));
}

TEST(Upload, LeavesNothingWhenItIsInterrupted) {
  const RunningServer server(
      WithLimits({.shortQuiet = std::chrono::milliseconds(100), .idle = std::chrono::milliseconds(300)}));
  std::ofstream(server.BlobPath("f")) << "old";
  const std::string begin = Request("UploadFile^,^^,^f^,^1000000") + "\r\n" + std::string(500000, 'x');
  {
    Client closing = server.Send(begin);
    Client resetting = server.Send(begin);
    resetting.ResetOnClose();
  }
  Client ending = server.Send(begin);
  ending.EndSending();
  EXPECT_EQ(ending.Answer(), "Status: 500000 bytes of the file are missing\r\n");
  Client stalling = server.Send(begin);
  EXPECT_EQ(stalling.Answer(), "Status: 500000 bytes of the file are missing\r\n");
  EXPECT_EQ(server.Ask("UploadFile^,^^,^f^,^10"), "Status: CR LF and the file's bytes are missing\r\n");
  EXPECT_TRUE(HoldsOnly(server, {"f"}));
  EXPECT_EQ(Content(server.BlobPath("f")), "old");
}

TEST(Upload, IsRefusedBeforeItsBytesArrive) {
  const RunningServer server;
  for (const char* size : {"2147483648", "-1", "", "x", "99999999999999999999"}) {
    EXPECT_EQ(server.Ask(std::string("UploadFile^,^^,^f^,^") + size, "\r\nbytes"),
              std::string("Status: '") + size + "' is not a byte count from 0 to 2147483647\r\n");
  }
  Client stranger = server.Send("^S1^,^nobody^,^x^,^UploadFile^,^^,^f^,^5^\r\n" + std::string(200000, 'x'));
  EXPECT_EQ(stranger.Answer(), "Status: Access denied for user 'nobody'\r\n");
  EXPECT_TRUE(HoldsOnly(server, {}));
}

}  // namespace
}  // namespace oxaqrycln::devserver
