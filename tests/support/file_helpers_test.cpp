#include "support/file_helpers.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temporary_directory.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

TEST(ChangeFileExt, RenamesByTheFirstRuleThatFits) {
  struct Case {
    const char* file;
    const char* rules;
    const char* renamed;
  };
  for (const Case& each :
       {Case{"a.tif", "TIF-PDF,JPEG-JPG", "a.PDF"}, Case{"a.TIF", "jpg-x,tif-pdf", "a.pdf"},
        Case{"a.jpeg", "TIF-PDF,JPEG-JPG", "a.jJPG"}, Case{"a.txt", "TIF-PDF", "a.txt"}, Case{"a.tif", "", "a.tif"}}) {
    const TemporaryDirectory directory;
    directory.Write(each.file, "content");
    EXPECT_EQ(ChangeFileExt(directory.path() + "\\" + each.file, each.rules), directory.path() + "\\" + each.renamed);
    EXPECT_EQ(directory.Read(each.renamed), "content") << each.file;
  }
}

TEST(ChangeFileExt, ReplacesAnOlderFileAndReportsTheNameAlsoWhenNothingCouldBeRenamed) {
  const TemporaryDirectory directory;
  directory.Write("a.tif", "new");
  directory.Write("a.PDF", "old");
  ChangeFileExt(directory.File("a.tif"), "TIF-PDF");
  EXPECT_EQ(directory.Read("a.PDF"), "new");
  EXPECT_EQ(ChangeFileExt(directory.File("none.tif"), "TIF-PDF"), directory.File("none.PDF"));
}

TEST(DeleteMatchingFiles, DeletesMatchesAndEveryDirectoryBesideThem) {
  const TemporaryDirectory directory;
  for (const char* file : {"a1.tif", "a2.tif", "b.tif"}) directory.Write(file, "x");
  std::filesystem::create_directory(directory.File("sub"));
  directory.Write("sub/c", "x");
  DeleteMatchingFiles(directory.path() + "\\a*.tif");
  EXPECT_FALSE(directory.Has("a1.tif"));
  EXPECT_FALSE(directory.Has("a2.tif"));
  EXPECT_TRUE(directory.Has("b.tif"));
  EXPECT_FALSE(directory.Has("sub"));
}

TEST(DeleteMatchingFiles, StopsAtADirectoryInADirectoryAndAtTheEmptyText) {
  const TemporaryDirectory directory;
  std::filesystem::create_directories(directory.File("sub/deep"));
  directory.Write("sub/c", "x");
  EXPECT_THROW(DeleteMatchingFiles(directory.path() + "/none"), RuntimeError);
  EXPECT_FALSE(directory.Has("sub/c"));
  EXPECT_TRUE(directory.Has("sub/deep"));
  EXPECT_THROW(DeleteMatchingFiles(""), RuntimeError);
}

}  // namespace
}  // namespace oxaqrycln::testing
