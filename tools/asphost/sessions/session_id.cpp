#include <array>
#include <random>

#include "tools/asphost/sessions/session_table.h"

namespace oxaqrycln::asphost {

std::string NewSessionId() {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr int kWords = 4;
  std::random_device device;  // the system's generator of secret numbers
  std::string id;
  for (int i = 0; i < kWords; ++i) {
    auto word = device();
    for (int digit = 0; digit < 8; ++digit, word >>= 4) id += kDigits[word & 15];
  }
  return id;
}

}  // namespace oxaqrycln::asphost
