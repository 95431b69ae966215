// strict_variants.h - makes EXPECT_EQ and ASSERT_EQ compare the types of Variants, too: a Long 1 is not an Integer 1.
// Included in front of every test source. It stands in for a function template that GoogleTest calls for these macros;
// a test of Variant notices when GoogleTest calls another one.
#ifndef OXAQRYCLN_TESTS_SUPPORT_STRICT_VARIANTS_H_
#define OXAQRYCLN_TESTS_SUPPORT_STRICT_VARIANTS_H_

#include <gtest/gtest.h>

#include <concepts>
#include <ostream>

#include "values/variant.h"

namespace oxaqrycln {

// So that a failed expectation shows values.
inline void PrintTo(const Variant& value, std::ostream* out) {
  *out << value.TypeName();
  if (value.type() >= Variant::Type::Boolean && value.type() <= Variant::Type::String) *out << ' ' << value.ToText();
}

template <typename Left, typename Right>
requires(std::same_as<Left, Variant> || std::same_as<Right, Variant>)::testing::AssertionResult
    CmpHelperEQ(const char* leftText, const char* rightText, const Left& left, const Right& right) {
  if (IsSame(left, right)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << leftText << " is " << ::testing::PrintToString(left) << ", but " << rightText
                                       << " is " << ::testing::PrintToString(right);
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TESTS_SUPPORT_STRICT_VARIANTS_H_
