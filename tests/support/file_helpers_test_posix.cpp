// Deleting in directories that hold links, and names with a backslash.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/file_helpers.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

TEST(DeleteMatchingFiles, FollowsNoLinkAndNoNameOutOfItsDirectory) {
  const TemporaryDirectory directory;
  const TemporaryDirectory elsewhere;
  elsewhere.Write("kept", "x");
  std::filesystem::create_directory_symlink(elsewhere.path(), directory.File("link"));
  DeleteMatchingFiles(directory.path() + "\\a*.tif");
  EXPECT_TRUE(elsewhere.Has("kept"));
  directory.Write("b.tif", "x");
  // Names with a backslash are no way out of the directory.
  directory.Write("in", "x");
  std::filesystem::create_directories(directory.File("ftp/..\\in"));
  directory.Write("ftp/..\\b.tif", "x");
  DeleteMatchingFiles(directory.path() + "\\ftp\\*");
  EXPECT_TRUE(directory.Has("in"));
  EXPECT_TRUE(directory.Has("b.tif"));
}

}  // namespace
}  // namespace oxaqrycln::testing
