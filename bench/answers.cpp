#include "bench/answers.h"

#include <cstdio>
#include <random>

namespace oxaqrycln::bench {
namespace {

// A number of at most seven digits, in no order, so that the titles have to be sorted.
int Scattered(int i) { return static_cast<int>(static_cast<unsigned>(i) * 2654435761U % 9999999U); }

}  // namespace

std::string HitList(int rows) {
  std::string text = "Status: OK\r\n" + std::to_string(rows) +
                     "\r\n10=Title;11=Customer;12=Date\r\n0\r\n^0^,^0^,^0^,^0^,^0^,^1024^\r\n"
                     "^Reference^,^DocID^,^Version^,^Title^,^Customer^,^Date^\r\n";
  text.reserve(text.size() + static_cast<std::size_t>(rows) * 73);
  char line[128];
  for (int i = 0; i < rows; ++i) {
    const int length =
        std::snprintf(line, sizeof line, "^$(#Mail)\\Inbox^,^%08d^,^%d^,^Offer %07d^,^Hill %03d^,^%02d.0%d.2003^\r\n",
                      i, i % 9 + 1, Scattered(i), i % 1000, i % 28 + 1, i % 9 + 1);
    text.append(line, static_cast<std::size_t>(length));
  }
  return text;
}

std::string ChannelLines(int lines) {
  std::mt19937 random(11);
  std::string text;
  for (int i = 0; i < lines; ++i) {
    for (unsigned length = 6 + random() % 8; length > 0; --length) {
      text += "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"[random() % 52];
    }
    text += ",description of the channel\r\n";
  }
  return text;
}

std::string Segments(int segments) {
  std::string text = "Status: OK\r\n3\r\n";
  for (int i = 0; i < segments; ++i) {
    text += "^Mail^,^Inbox^,^4711^,^2^,^" + std::to_string(i % 30000) +
            "^,^7^,^Body^,^120^,^2^,^0^,^txt^,^1^,^The text^,^body.txt^,^0^,^L1^,^0^,^A first line of the text\r\n"
            "a second one, somewhat longer than the first\r\nand the last^\r\n";
  }
  return text;
}

std::string Framed(const std::string& text) { return "TotalBytes:" + std::to_string(text.size()) + "\r\n" + text; }

}  // namespace oxaqrycln::bench
