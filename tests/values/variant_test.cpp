#include "values/variant.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>

#include "tests/support/error_of.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

using testing::ErrorOf;

TEST(Variant, TurnsTextIntoNumbersByTheAutomationRules) {
  struct Case {
    const char* text;
    std::int32_t value;
  };
  for (const Case& each :
       {Case{" 12 ", 12}, Case{"-7", -7}, Case{"+7", 7}, Case{"2.5", 2}, Case{"3.5", 4}, Case{"-2.5", -2},
        Case{"1e3", 1000}, Case{".5", 0}, Case{"1E-400", 0}, Case{"007", 7}, Case{"2147483647.4", 2147483647}}) {
    EXPECT_EQ(Variant(each.text).ToLong(), each.value) << each.text;
  }
  for (const char* large : {"2147483648", "1e400"}) EXPECT_EQ(ErrorOf([&] { Variant(large).ToLong(); }), 6) << large;
  for (const char* bad : {"", "abc", "1x", "- 1", "--1", "inf", "nan", "0x10", "1e", "True"}) {
    EXPECT_EQ(ErrorOf([&] { Variant(bad).ToLong(); }), 13) << bad;
  }
}

TEST(Variant, ConvertsBetweenTypesAndRefusesValuesThatDoNotFit) {
  EXPECT_EQ(Variant(true).ToLong(), -1);
  EXPECT_EQ(Variant(2.5).ToInteger(), 2);
  EXPECT_EQ(Variant().ToLong(), 0);
  EXPECT_TRUE(Variant("-3").ToBoolean());
  EXPECT_TRUE(Variant(" tRUE ").ToBoolean());
  EXPECT_FALSE(Variant("0").ToBoolean());
  EXPECT_EQ(Variant("15.11.2026 20:31").ToDate().ToIso(), "2026-11-15T20:31:00");
  EXPECT_EQ(Variant("2026-11-15").ToDate().ToIso(), "2026-11-15T00:00:00");
  EXPECT_EQ(ErrorOf([] { Variant(32768).ToInteger(); }), 6);
  EXPECT_EQ(ErrorOf([] { Variant(256).ToByte(); }), 6);
  EXPECT_EQ(ErrorOf([] { Variant(-1).ToByte(); }), 6);
  EXPECT_EQ(ErrorOf([] { Variant(std::numeric_limits<double>::quiet_NaN()).ToLong(); }), 6);
  EXPECT_EQ(ErrorOf([] { Variant::Null().ToLong(); }), 94);
  EXPECT_EQ(ErrorOf([] { Variant(Missing).ToLong(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("yes").ToBoolean(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("x").ToObject(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("x").ToBytes(); }), 13);
  EXPECT_EQ(Variant(Variant::Bytes{1, 0}).ToBytes(), (Variant::Bytes{1, 0}));
  EXPECT_EQ(ErrorOf([] { Variant(Variant::ObjectRef()).ToObject(); }), 91);
}

TEST(Variant, ConcatenatesAsText) {
  struct Case {
    Variant value;
    const char* text;
  };
  for (const Case& each :
       {Case{Variant(), ""}, Case{Variant::Null(), ""}, Case{false, "False"}, Case{true, "True"},
        Case{std::uint8_t{7}, "7"}, Case{-5, "-5"}, Case{2.5, "2.5"}, Case{0.1, "0.1"}, Case{1e20, "1E+20"},
        Case{-0.5, "-0.5"}, Case{3.0, "3"}, Case{DateTime::FromCivil({2026, 1, 2, 0, 0, 0}), "02.01.2026"}}) {
    EXPECT_EQ(each.value.ToText(), each.text) << each.value.TypeName();
  }
  EXPECT_EQ(ErrorOf([] { Variant(Missing).ToText(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant(Variant::Bytes{1}).ToText(); }), 13);
}

struct DerivedObject : Object {};
enum Unscoped { kThird = 3 };

static_assert(!std::is_constructible_v<Variant, std::nullptr_t> && !std::is_constructible_v<Variant, const wchar_t*>);

TEST(Variant, TakesEveryKindOfNumberTextAndObject) {
  const auto object = std::make_shared<DerivedObject>();
  struct Case {
    const char* name;
    Variant value;
    Variant::Type type;
    double number;
  };
  using enum Variant::Type;
  for (const Case& each :
       {Case{"bool", true, Boolean, -1}, Case{"uint8_t", std::uint8_t{200}, Byte, 200}, Case{"char", '7', Long, 55},
        Case{"short", std::int16_t{-3}, Integer, -3}, Case{"uint16_t", std::uint16_t{65535}, Long, 65535},
        Case{"enum", kThird, Long, 3}, Case{"unsigned", 7U, Long, 7}, Case{"long", -7L, Long, -7},
        Case{"size_t", std::size_t{7}, Long, 7}, Case{"large unsigned", 0x80000000U, Double, 2147483648.0},
        Case{"largest Long", 2147483647LL, Long, 2147483647}, Case{"smallest Long", -2147483648LL, Long, -2147483648.0},
        Case{"below Long", -2147483649LL, Double, -2147483649.0}, Case{"large", 1ULL << 63, Double, 0x1p63},
        Case{"float", 0.5F, Double, 0.5}}) {
    EXPECT_EQ(each.value.type(), each.type) << each.name << ": " << each.value.TypeName();
    EXPECT_EQ(each.value.ToDouble(), each.number) << each.name;
  }
  EXPECT_EQ(Variant(object).ToObject(), object);
  std::string text = "text";
  EXPECT_EQ(Variant(text.data()).ToText(), text);
}

TEST(Variant, ComparesNumbersByValueAndAllElseByTypeAndValue) {
  const Variant date = DateTime::FromCivil({1899, 12, 31, 0, 0, 0});
  for (const Variant& each : {Variant(std::uint8_t{1}), Variant::Integer(1), Variant::Long(1), Variant(1.0)}) {
    EXPECT_TRUE(each == 1 && 1.0 == each && each != 2) << each.TypeName();
    EXPECT_FALSE(each == 1.5 || each == true || each == "1" || each == date) << each.TypeName();
  }
  EXPECT_FALSE(Variant(true) == -1 || Variant() == 0 || Variant() == Variant::Null() || Variant() == Missing);
  EXPECT_TRUE(Variant("a") == "a" && Variant(true) != false);
  EXPECT_FALSE(IsSame(Variant::Integer(1), Variant::Long(1)));
  EXPECT_TRUE(IsSame(Variant::Long(1), 1));
}

TEST(Variant, IsComparedWithItsTypeByTheMacros) {
  EXPECT_NONFATAL_FAILURE(EXPECT_EQ(Variant::Integer(1), Variant::Long(1)), "is Integer 1, but");
  EXPECT_NONFATAL_FAILURE(EXPECT_EQ(Variant::Integer(1), 1), "is Integer 1, but");
}

}  // namespace
}  // namespace oxaqrycln
