// outputs.h - checks all outputs of a call at once. Each expected value is best unlike the others, so that swapped
// outputs show.
#ifndef OXAQRYCLN_TESTS_SUPPORT_OUTPUTS_H_
#define OXAQRYCLN_TESTS_SUPPORT_OUTPUTS_H_

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <tuple>

#include "tests/support/page.h"

namespace oxaqrycln::testing {

// The value that a call is expected to write to one of its outputs, its type included.
struct Output {
  const char* name;
  Variant value;
};

// The values as the fields of a record line: "^first^,^second^".
template <std::size_t kCount>
std::string Fields(const Output (&outputs)[kCount]) {
  std::string line;
  for (const Output& each : outputs) line += (line.empty() ? "^" : ",^") + each.value.ToText() + "^";
  return line;
}

// Runs call with a pointer to an output for each expected one, in the same order, and compares what it wrote.
template <std::size_t kCount, typename Call>
void ExpectOutputs(const Output (&expected)[kCount], Call&& call) {
  std::array<Variant, kCount> outputs;
  std::apply([&](auto&... each) { call(&each...); }, outputs);
  for (std::size_t i = 0; i < kCount; ++i) EXPECT_EQ(outputs[i], expected[i].value) << expected[i].name;
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_OUTPUTS_H_
