#include "component/objects.h"

#include <gtest/gtest.h>

#include "tests/support/error_of.h"

namespace oxaqrycln {
namespace {

using testing::ErrorOf;

TEST(Objects, AreMadeByIdentifierWhateverItsCase) {
  class Thing : public Object {};
  EXPECT_EQ(ErrorOf([] { CreateObject("Test.Thing"); }), 429);
  RegisterObject("Test.Thing", [] { return std::make_shared<Thing>(); });
  EXPECT_NE(CreateObject("test.THING"), nullptr);
  RegisterObject("Test.Thing", [] { return nullptr; });
  EXPECT_EQ(ErrorOf([] { CreateObject("Test.Thing"); }), 429);
  EXPECT_TRUE(UnregisterObject("TEST.thing"));
  EXPECT_FALSE(UnregisterObject("Test.Thing"));
}

}  // namespace
}  // namespace oxaqrycln
