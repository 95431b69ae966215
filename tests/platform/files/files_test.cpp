#include "platform/files/files.h"

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

#include "platform/files/open_files.h"
#include "tests/support/error_of.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/temporary_directory.h"
#include "values/wildcard.h"

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

TEST(FileNames, AreRefusedWhenTheyCouldLeaveADirectoryOrMeanADevice) {
  for (const char* good : {"a.pdf", "42_a.pdf", "no extension", ".log", "a..b", "COM0", "console.txt", "\xE4.txt"}) {
    EXPECT_TRUE(IsPlainFileName(good)) << good;
  }
  for (const char* bad :
       {"", ".", "..", "a/b", "a\\b", "C:a", "a\tb", "a.", "a ", "nul", "CON.txt", "com1.tar.gz", "LPT9", "aux .txt"}) {
    EXPECT_FALSE(IsPlainFileName(bad)) << bad;
  }
  EXPECT_FALSE(IsPlainFileName(std::string("a\0b", 3)));
  EXPECT_TRUE(IsPlainFileName(std::string(255, 'x')));
  EXPECT_FALSE(IsPlainFileName(std::string(256, 'x')));
}

TEST(Files, TurnFailuresIntoRunTimeErrors) {
  const TemporaryDirectory directory;
  directory.Write("file", "x");
  EXPECT_EQ(ErrorOf([&] { WriteFile(directory.File("none\\file"), "x"); }), 76);
  EXPECT_EQ(ErrorOf([&] { RemoveFile(directory.File("none")); }), 53);
  EXPECT_EQ(ErrorOf([&] { WriteFile(directory.path(), "x"); }), 75);
  EXPECT_EQ(ErrorOf([&] { RemoveEmptyDirectory(directory.path()); }), 75);
  EXPECT_EQ(ErrorOf([&] { ListDirectory(directory.File("file/x")); }), 76);
  EXPECT_EQ(ErrorOf([&] { RemoveFile(""); }), 52);
  EXPECT_EQ(ErrorOf([&] { RemoveFile(std::string("a\0b", 3)); }), 52);
  EXPECT_EQ(ErrorOf([&] { WriteFile(directory.File(std::string(300, 'x')), "x"); }), 52);
  EXPECT_EQ(ErrorOf([&] { OutputFile("/dev/full").Write("x"); }), 61);
}

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

TEST(OpenFiles, GiveTheLowestFreeNumberAndKnowWhatIsOpen) {
  const TemporaryDirectory directory;
  OpenFiles files;
  EXPECT_EQ(files.OpenForWriting(directory.File("a")), 1);
  EXPECT_EQ(files.OpenForWriting(directory.File("b")), 2);
  files.Write(1, "one");
  files.Write(2, "two");
  files.Write(1, "+");
  files.Close(1);
  EXPECT_EQ(directory.Read("a"), "one+");
  EXPECT_EQ(ErrorOf([&] { files.Write(1, "x"); }), 52);
  EXPECT_EQ(ErrorOf([&] { files.Close(0); }), 52);
  EXPECT_EQ(files.OpenForWriting(directory.File("c")), 1);
}

}  // namespace
}  // namespace oxaqrycln::testing
