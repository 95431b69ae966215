#include "automation/method_table.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/error_of.h"

namespace oxaqrycln {
namespace {

using oxaqrycln::testing::ErrorOf;

TEST(MethodTable, FindsNamesRegardlessOfLetterCase) {
  EXPECT_EQ(FindMethod("HELLOworld"), FindMethod("HelloWorld"));
  EXPECT_EQ(FindVariable("STRsessionid"), FindVariable("strSessionID"));
  EXPECT_EQ(FindMethod("HelloWorl"), nullptr);
  EXPECT_EQ(FindVariable(""), nullptr);
}

TEST(MethodTable, ChecksTheNumberOfArguments) {
  Variant value("x");
  Variant missing(Missing);
  struct Case {
    const char* name;
    const char* method;
    std::vector<Variant*> arguments;
    std::int32_t error;
  };
  for (const Case& test : {
           Case{"required left out", "Encode", {}, 449},
           Case{"required is a null pointer", "Encode", {nullptr}, 449},
           Case{"required is a missing value", "Encode", {&missing}, 449},
           Case{"one of two required is missing", "TELOGetQueryFormatListInit", {&value}, 449},
           Case{"one too many", "Encode", {&value, &value}, 450},
           Case{"one where none is allowed", "HelloWorld", {nullptr}, 450},
           Case{"the fifth input of a query is required", "TELOQueryArchiveInit", std::vector<Variant*>(4, &value),
                449},
           Case{"the sixth input of a query is optional", "TELOQueryArchiveInit", std::vector<Variant*>(5, &value), 0},
           Case{"an optional input left out after a given one", "WriteLog", {&value, nullptr}, 0},
           Case{"all outputs left out", "TELOGetChannelsNext", {}, 0},
       }) {
    clsQuery query;
    EXPECT_EQ(ErrorOf([&] { FindMethod(test.method)->call(query, test.arguments); }), test.error) << test.name;
  }
}

}  // namespace
}  // namespace oxaqrycln
