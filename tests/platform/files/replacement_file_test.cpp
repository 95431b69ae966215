#include "platform/files/replacement_file.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

std::size_t CountEntries(const std::string& directory) {
  return static_cast<std::size_t>(
      std::distance(std::filesystem::directory_iterator(directory), std::filesystem::directory_iterator()));
}

// Runs the body in a process of its own; its wait status.
int InChild(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

TEST(ReplacementFile, IsInvisibleUntilItIsWhole) {
  const TemporaryDirectory directory;
  directory.Write("target", "old");
  {
    ReplacementFile dropped(directory.File("target"));
    dropped.Write("lost");
  }
  EXPECT_EQ(directory.Read("target"), "old");
  ReplacementFile first(directory.File("target"));
  ReplacementFile second(directory.File("target"));
  first.Write("first");
  second.Write("second");
  EXPECT_EQ(directory.Read("target"), "old");
  first.Commit();
  EXPECT_EQ(directory.Read("target"), "first");
  second.Commit();
  EXPECT_EQ(directory.Read("target"), "second");
  EXPECT_EQ(CountEntries(directory.path()), 1U);
}

TEST(ReplacementFile, LeavesNothingWhenItsProcessIsKilled) {
  const TemporaryDirectory directory;
  if (OutputFile::MakeUnnamed(directory.path()) == nullptr) GTEST_SKIP() << "no unnamed files in this file system";
  const int status = InChild([&] {
    ReplacementFile file(directory.File("target"));
    file.Write("half");
    return raise(SIGKILL);
  });
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(CountEntries(directory.path()), 0U);
}

// Without /proc an unnamed file could not get its name, so that the file has one from its start.
TEST(ReplacementFile, WorksWhereAFileCannotBeNamedLater) {
  constexpr int kNotPossible = 77;
  const TemporaryDirectory directory;
  directory.Write("target", "old");
  const int status = InChild([&] {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 || mount("none", "/proc", "tmpfs", 0, nullptr) != 0) {
      return kNotPossible;
    }
    {
      ReplacementFile dropped(directory.File("target"));
      if (CountEntries(directory.path()) != 2) return 1;
    }
    if (CountEntries(directory.path()) != 1) return 2;
    ReplacementFile file(directory.File("target"));
    file.Write("new");
    file.Commit();
    return CountEntries(directory.path()) == 1 ? 0 : 3;
  });
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotPossible) GTEST_SKIP() << "no mount namespace to be had";
  EXPECT_EQ(status, 0);
  EXPECT_EQ(directory.Read("target"), "new");
}

}  // namespace
}  // namespace oxaqrycln::testing
