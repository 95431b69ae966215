// Files on a disk that is full.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files/files.h"
#include "tests/support/error_of.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

std::function<void()> behindNextWritev;  // what others do in the moment after the component's next call of it

}  // namespace
}  // namespace oxaqrycln::testing

// Takes the place of the C library's in this program.
extern "C" ssize_t writev(int descriptor, const iovec* parts, int count) {
  const ssize_t written = syscall(SYS_writev, descriptor, parts, count);
  if (const auto others = std::exchange(oxaqrycln::testing::behindNextWritev, nullptr)) others();
  return written;
}

namespace oxaqrycln::testing {
namespace {

TEST(Files, ThatCannotBeAppendedToStayAsTheyWere) {
  const TemporaryDirectory directory;
  directory.Write("empty", "");
  directory.Write("old", "old");
  {
    const FileSizeLimit limit(5);
    for (const char* name : {"empty", "old", "new"}) {
      EXPECT_EQ(ErrorOf([&] { AppendWhole(directory.File(name), "more than five"); }), 61) << name;
    }
  }
  EXPECT_TRUE(directory.Has("empty"));
  EXPECT_EQ(directory.Read("empty"), "");
  EXPECT_EQ(directory.Read("old"), "old");
  EXPECT_FALSE(directory.Has("new"));
  EXPECT_EQ(ErrorOf([] { OutputFile("/dev/full").Write("x"); }), 61);
  EXPECT_EQ(ErrorOf([] { AppendWhole("/dev/full", "x"); }), 61);
  AppendWhole(directory.File("old"), "+");
  EXPECT_EQ(directory.Read("old"), "old+");
}

TEST(Files, KeepWhatOthersHaveAppendedBehindAShortWrite) {
  for (const std::string others : {"", "+"}) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("log");
    directory.Write("log", "old");
    std::optional<FileSizeLimit> limit(5);
    behindNextWritev = [&] {
      limit.reset();
      AppendWhole(path, others);
    };
    EXPECT_EQ(ErrorOf([&] { AppendToFile(path, std::array<std::string_view, 2>{"mo", "re"}); }), 61);
    EXPECT_EQ(directory.Read("log"), others.empty() ? "old" : "oldmo+");
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
