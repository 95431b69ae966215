#include "platform/byte_block.h"

#include <gtest/gtest.h>

#include <string>

namespace oxaqrycln {
namespace {

TEST(ByteBlock, KeepsItsBytesFromTheHeapIntoAMappingAndOn) {
  ByteBlock block;
  std::string expected;
  for (int i = 0; expected.size() < 9'000'000; ++i) {
    const std::string piece(static_cast<std::size_t>(i % 5000), static_cast<char>('a' + i % 26));
    block.Append(piece);
    expected += piece;
  }
  EXPECT_TRUE(block.View() == expected);
  ByteBlock moved = std::move(block);
  EXPECT_TRUE(moved.View() == expected);
  EXPECT_EQ(block.size(), 0U);  // NOLINT: a block moved from is empty
  moved.Release();
  EXPECT_EQ(moved.capacity(), 0U);
  moved.Append("again");
  EXPECT_EQ(moved.View(), "again");
}

TEST(ByteBlock, MakesPagesBehindItsBytesAndInsideItsRoom) {
  constexpr std::size_t kMebibyte = 1U << 20U;
  ByteBlock block;
  block.Reserve(3 * kMebibyte);
  const std::string held(5000, 'h');
  block.Append(held);
  EXPECT_GE(block.MakePages(kMebibyte), held.size() + kMebibyte);
  EXPECT_LT(block.MakePages(kMebibyte), 2 * kMebibyte);
  EXPECT_EQ(block.View(), held);
  EXPECT_EQ(block.MakePages(8 * kMebibyte), block.capacity());
  block.Extend(block.capacity() - block.size());
  EXPECT_EQ(block.MakePages(kMebibyte), block.size());  // full
  ByteBlock small;
  small.Append(held);
  EXPECT_EQ(small.MakePages(kMebibyte), small.capacity());
}

}  // namespace
}  // namespace oxaqrycln
