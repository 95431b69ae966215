#include "values/byte_scan.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace oxaqrycln {
namespace {

// Every place, overlapping ones too, in a copy that ends where its memory ends, so that a sanitizer sees reading on.
template <std::size_t kSize>
std::vector<std::size_t> Places(const std::string& text, const char (&pattern)[kSize]) {
  const auto copy = std::make_unique<char[]>(text.size());
  text.copy(copy.get(), text.size());
  std::vector<std::size_t> places;
  ForEachPlace(copy.get(), copy.get() + text.size(), pattern, [&](const char* place) {
    places.push_back(static_cast<std::size_t>(place - copy.get()));
    return true;
  });
  return places;
}

std::vector<std::size_t> PlainPlaces(const std::string& text, std::string_view pattern) {
  std::vector<std::size_t> places;
  for (auto at = text.find(pattern); at != std::string::npos; at = text.find(pattern, at + 1)) places.push_back(at);
  return places;
}

TEST(ByteScan, FindsWhatAPlainSearchFindsInTextsOfEveryLength) {
  std::mt19937 random(7);
  for (std::size_t length = 0; length < 100; ++length) {
    for (int round = 0; round < 20; ++round) {
      std::string text(length, '\0');
      for (char& each : text) each = "^,\r\n"[random() % 4];
      EXPECT_EQ(Places(text, "^,^"), PlainPlaces(text, "^,^")) << text;
      EXPECT_EQ(Places(text, "\r\n"), PlainPlaces(text, "\r\n")) << text;
      EXPECT_EQ(FindNear(text, "^,^"), text.find("^,^")) << text;
    }
  }
}

TEST(ByteScan, StopsWhenTheVisitorHasEnough) {
  const std::string text(100, '^');
  int visits = 0;
  ForEachPlace(text.data(), text.data() + text.size(), "^^", [&](const char* /*unused*/) { return ++visits < 3; });
  EXPECT_EQ(visits, 3);
}

}  // namespace
}  // namespace oxaqrycln
