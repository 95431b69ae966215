// The entry of every target for libFuzzer.
#include "fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  oxaqrycln::fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
