#include "platform/files/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/files/open_files.h"
#include "tests/support/error_of.h"
#include "tests/support/temporary_directory.h"

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
}

TEST(Files, HaveTheirNamesInUnicodeForOtherPrograms) {
  const TemporaryDirectory directory;
  WriteFile(directory.path() + "\\\xE4\x80.txt", "x");
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(directory.path()) / u8"\u00E4\u20AC.txt"));
  EXPECT_EQ(ListDirectory(directory.path()).at(0).name, "\xE4\x80.txt");
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
