#include "platform/byte_block.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
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

// Bytes of the process that are in memory.
std::size_t ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  std::size_t pages = 0;
  statm >> pages >> pages;
  return pages * 4096;
}

TEST(ByteBlock, ThatIsVeryLargeServesTheNextUntilItIsGivenBack) {
  constexpr std::size_t kSize = 64U << 20U;
  const std::size_t before = ResidentBytes();
  const auto fill = [](std::size_t byteCount) {
    ByteBlock block;
    block.Reserve(byteCount);
    std::memset(block.data(), 'x', byteCount);
    return block;
  };
  fill(kSize).Release();
  EXPECT_GT(ResidentBytes(), before + kSize / 2);
  ByteBlock small;
  small.Reserve(kSize / 4);  // does not take four times of what it asks for
  EXPECT_LT(small.capacity(), kSize / 2);
  ByteBlock next;
  next.Append("in front");
  next.Reserve(kSize - 5000);
  EXPECT_EQ(next.View(), "in front");
  EXPECT_EQ(next.data()[kSize - 6000], 'x');  // the same pages
  const char* place = next.data();
  next.Release();
  ByteBlock::GiveBackSpares();  // not yet
  next.Reserve(kSize);
  EXPECT_EQ(next.data(), place);
  next.Release();
  ByteBlock first = fill(kSize * 2);
  ByteBlock second = fill(kSize * 2);
  first.Release();
  second.Release();  // two are kept, and no third
  EXPECT_LT(ResidentBytes(), before + 4 * kSize + kSize / 2);
  ByteBlock::GiveBackSpares(std::chrono::seconds::zero());
  EXPECT_LT(ResidentBytes(), before + kSize / 2);
  EXPECT_EQ(next.capacity(), 0U);
}

TEST(ByteBlock, ReservesAddressesNotMemory) {
  ByteBlock block;
  block.Reserve(std::size_t{1} << 36U);  // 64 GiB: more than most machines have
  block.Append("small");
  EXPECT_EQ(block.View(), "small");
}

}  // namespace
}  // namespace oxaqrycln
