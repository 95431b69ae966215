#include "platform/files/replacement_file.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

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
  EXPECT_EQ(directory.CountEntries(), 1U);
}

}  // namespace
}  // namespace oxaqrycln::testing
