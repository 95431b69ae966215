// Replacement files of processes that end, and in a system without names for unnamed files.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "platform/files/replacement_file.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

// Runs the body in a process of its own; its wait status.
int InChild(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = -1;
  waitpid(child, &status, 0);
  return status;
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
  EXPECT_EQ(directory.CountEntries(), 0U);
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
      if (directory.CountEntries() != 2) return 1;
    }
    if (directory.CountEntries() != 1) return 2;
    ReplacementFile file(directory.File("target"));
    file.Write("new");
    file.Commit();
    return directory.CountEntries() == 1 ? 0 : 3;
  });
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotPossible) GTEST_SKIP() << "no mount namespace to be had";
  EXPECT_EQ(status, 0);
  EXPECT_EQ(directory.Read("target"), "new");
}

}  // namespace
}  // namespace oxaqrycln::testing
