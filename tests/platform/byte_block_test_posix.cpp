// Windows has no memory that counts only once it is used.
#include <gtest/gtest.h>

#include "platform/byte_block.h"

namespace oxaqrycln {
namespace {

TEST(ByteBlock, ReservesAddressesNotMemory) {
  ByteBlock block;
  block.Reserve(std::size_t{1} << 36U);  // 64 GiB: more than most machines have
  block.Append("small");
  EXPECT_EQ(block.View(), "small");
}

}  // namespace
}  // namespace oxaqrycln
