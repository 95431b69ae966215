#include "values/sorted_list.h"

#include <gtest/gtest.h>

namespace oxaqrycln {
namespace {

TEST(SortedList, KeepsTheNumberOfEachTextAndTheOrderOfEqualTexts) {
  SortedList list;
  list.Add("beta", 1);
  list.Add("Alpha", 2);
  EXPECT_EQ(list.Text(0), "Alpha");
  list.Add("ALPHA", 3);
  list.Add("\xE4", 4);
  EXPECT_EQ(list.Data(0), 2);
  EXPECT_EQ(list.Text(1), "ALPHA");
  EXPECT_EQ(list.Data(3), 4);
  EXPECT_ANY_THROW(list.Text(4));
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
}

}  // namespace
}  // namespace oxaqrycln
