// outputs.h - all outputs of a call at once, each with a value of its own, so that none can be taken for another.
#ifndef OXAQRYCLN_TESTS_SUPPORT_OUTPUTS_H_
#define OXAQRYCLN_TESTS_SUPPORT_OUTPUTS_H_

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <tuple>

#include "tests/support/page.h"

namespace oxaqrycln::testing {

// What a call is expected to write to one of its outputs, in its type.
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

// Runs call(output, ...) with as many outputs and compares what it wrote, the types included.
template <std::size_t kCount, typename Call>
void ExpectOutputs(const Output (&expected)[kCount], Call&& call) {
  std::array<Variant, kCount> outputs;
  std::apply([&](auto&... each) { call(&each...); }, outputs);
  for (std::size_t i = 0; i < kCount; ++i) EXPECT_EQ(outputs[i], expected[i].value) << expected[i].name;
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_OUTPUTS_H_
