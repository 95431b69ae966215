#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "automation/method_table.h"

namespace oxaqrycln {
namespace {

TEST(MethodReference, IsWhatTheDocumentationHolds) {
  std::ifstream file(OXAQRYCLN_SOURCE_DIR "/docs/methods.md", std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  EXPECT_EQ(page, MethodReference()) << "make it anew: oxaqry methods --markdown > docs/methods.md";
}

}  // namespace
}  // namespace oxaqrycln
