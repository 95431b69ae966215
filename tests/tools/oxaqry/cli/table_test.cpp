#include "tools/oxaqry/cli/table.h"

#include <gtest/gtest.h>

namespace oxaqrycln::oxaqry {
namespace {

TEST(Table, FitsATerminalByShorterCellsOrByRecords) {
  Table table({"ID", "Title", ""});
  table.Add({"7", "Gr\u00FC\u00DFe aus Gr\u00F6\u00DFling", "x"});
  table.Add({"8", "", "y"});
  const char* const whole =
      "ID  Title\n--  ------------------  -\n7   Gr\u00FC\u00DFe aus Gr\u00F6\u00DFling  x\n"
      "8                       y\n";
  const char* const shortened = "ID  Title\n--  ----------  -\n7   Gr\u00FC\u00DFe aus\u2026  x\n8               y\n";
  const char* const records = "ID: 7\nTitle: Gr\u00FC\u00DFe aus Gr\u00F6\u00DFling\n  x\n\nID: 8\n  y\n";
  EXPECT_EQ(table.Text(0), whole);
  EXPECT_EQ(table.Text(25), whole);
  EXPECT_EQ(table.Text(17), shortened);
  EXPECT_EQ(table.Text(16), records);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
