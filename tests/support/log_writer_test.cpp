#include "support/log_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>
#include <vector>

#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

class LogWriter : public ::testing::Test {
 protected:
  LogWriter() { clock.SetWall(DateTime::FromCivil({2026, 11, 15, 20, 31, 7})); }
  TemporaryDirectory logs;
  std::string directory{logs.path()};
  std::string session{"S1"};
  Clock clock;
  SessionLog log{directory, session, clock};
};

TEST_F(LogWriter, WritesTimeLevelAndText) {
  log.Write(bytInfo, "Assigning control instance #", 3);
  log.Write(bytWarning, "w");
  log.Write(bytError, "e");
  log.Write(bytExtended, "d");
  log.Write(9, "other");
  log.WriteProcessingError("Init", RuntimeError(76));
  EXPECT_EQ(logs.Read("S1.log"),
            "15.11.2026 20:31:07     Assigning control instance #3\r\n"
            "15.11.2026 20:31:07 !!! <WARNING> w\r\n"
            "15.11.2026 20:31:07 ### <ERROR> e\r\n"
            "15.11.2026 20:31:07 +++ <DEBUG> d\r\n"
            "15.11.2026 20:31:07     other\r\n"
            "15.11.2026 20:31:07 ### <ERROR> Processing error in function 'Init()': 76 - Path not found\r\n");
}

TEST_F(LogWriter, LosesLinesOfUnsafeSessionsAndMissingDirectories) {
  for (const char* unsafe : {"../S", "a\\b", "a/b", "C:x", "a\nb", "NUL"}) {
    session = unsafe;
    log.Write(bytInfo, "lost");
  }
  session = std::string("a\0b", 3);
  log.Write(bytInfo, "lost");
  session = "S1";
  directory = logs.File("missing");
  log.Write(bytInfo, "lost");
  EXPECT_TRUE(std::filesystem::is_empty(logs.path()));
  directory = logs.path() + "\\";
  session = "";
  log.Write(bytInfo, "kept");
  EXPECT_NE(logs.Read(".log").find("kept"), std::string::npos);
}

TEST_F(LogWriter, KeepsLinesOfSeveralThreadsWhole) {
  const std::string text(500, 'x');
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) log.Write(bytInfo, text);
    });
  }
  for (auto& thread : threads) thread.join();
  const std::string line = "15.11.2026 20:31:07     " + text + "\r\n";
  const std::string all = logs.Read("S1.log");
  ASSERT_EQ(all.size(), 200 * line.size());
  for (std::size_t at = 20; at < all.size(); at += line.size())
    ASSERT_EQ(all.substr(at, 503).substr(4, 499), text.substr(1));
}

}  // namespace
}  // namespace oxaqrycln::testing
