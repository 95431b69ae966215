#include "tools/oxaqry/cli/table.h"

#include <gtest/gtest.h>

namespace oxaqrycln::oxaqry {
namespace {

TEST(Table, AlignsColumnsByCharactersNotBytes) {
  Table table({"Name", "Größe", "€"});
  table.Add({"Käse", "1", "x"});
  table.Add({"Oil"});
  table.Add({"a", "b", "c", "without a title"});
  EXPECT_EQ(table.Text(),
            "Name  Größe  €\n"
            "----  -----  -  ---------------\n"
            "Käse  1      x\n"
            "Oil\n"
            "a     b      c  without a title\n");
}

TEST(Table, ShowsNothingThatDrivesATerminal) {
  const std::string text = std::string("a\x1B[2J\r\n\x7F\x9D\0\xE4", 11);
  EXPECT_EQ(Printable(text), "a\uFFFD[2J\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDä");
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
