// The mode of a log file, and logs on a disk that is full.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "support/log_writer.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

TEST(LogFile, IsForItsOwnerAndGroupAndHoldsNoHalfLineOnAFullDisk) {
  const TemporaryDirectory logs;
  const std::string directory = logs.path();
  const std::string session = "S1";
  Clock clock;
  clock.SetWall(DateTime::FromCivil({2026, 11, 15, 20, 31, 7}));
  SessionLog log{directory, session, clock};
  log.Write(bytInfo, "whole");
  struct stat status {};
  ASSERT_EQ(stat(logs.File("S1.log").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0007, 0U);
  const std::string before = logs.Read("S1.log");
  {
    const FileSizeLimit limit(before.size() + 10);
    log.Write(bytInfo, "cut in two");
  }
  EXPECT_EQ(logs.Read("S1.log"), before);
  log.Write(bytInfo, "next");
  EXPECT_EQ(logs.Read("S1.log"), before + "15.11.2026 20:31:07     next\r\n");
}

}  // namespace
}  // namespace oxaqrycln::testing
