#include "values/wildcard.h"

#include <gtest/gtest.h>

namespace oxaqrycln {
namespace {

TEST(Wildcards, MatchNames) {
  struct Case {
    const char* pattern;
    const char* name;
    bool matches;
  };
  for (const Case& each :
       {Case{"*", "a", true}, Case{"*.*", "no dot", true}, Case{"a?c", "abc", true}, Case{"a?c", "ac", false},
        Case{"*.tif", "x.tif", true}, Case{"*.tif", "x.tiff", false}, Case{"a*b*c", "aXbYbZc", true},
        Case{"a*b*c", "aXbY", false}, Case{"", "", true}, Case{"**", "", true}, Case{"plain", "plain", true}}) {
    EXPECT_EQ(MatchesWildcard(each.pattern, each.name), each.matches) << each.pattern << " on " << each.name;
  }
}

}  // namespace
}  // namespace oxaqrycln
