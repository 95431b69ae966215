#include "support/line_order.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "support/response_buffer.h"
#include "values/code_page.h"

namespace oxaqrycln {
namespace {

// Sorts by three characters at a time. A key holds those of one line from some depth on, 9 bits each (the upper-cased
// code plus 1, 0 behind the line's end), above the line's index in 32 bits. Equal keys therefore stand in the order of
// the lines, and lines whose characters agree are told apart by their next three.
using Key = std::uint64_t;
constexpr std::size_t kCharacters = 3;
constexpr unsigned kCharacterBits = 9;
constexpr unsigned kIndexBits = 32;

std::int32_t IndexOf(Key key) noexcept { return static_cast<std::int32_t>(key & 0xFFFFFFFFU); }
Key CharactersOf(Key key) noexcept { return key >> kIndexBits; }
bool EndsWithin(Key key) noexcept { return (CharactersOf(key) & ((1U << kCharacterBits) - 1)) == 0; }

Key MakeKey(const ResponseLines& lines, std::int32_t index, std::size_t depth) {
  const std::string_view line = lines.Line(index);
  Key characters = 0;
  for (std::size_t i = depth; i < depth + kCharacters; ++i) {
    const Key code = i < line.size() ? static_cast<unsigned char>(UpperCase(line[i])) + 1U : 0U;
    characters = characters << kCharacterBits | code;
  }
  return characters << kIndexBits | static_cast<Key>(index);
}

// Sorts keys whose lines agree in front of the depth. Of the groups that need a further look the largest is the next
// turn of the loop, so that the recursion is no deeper than the logarithm of the number of lines.
void Sort(const ResponseLines& lines, std::span<Key> keys, std::size_t depth) {
  while (keys.size() > 1) {
    for (Key& key : keys) key = MakeKey(lines, IndexOf(key), depth);
    if (!std::ranges::is_sorted(keys)) std::ranges::sort(keys);
    depth += kCharacters;
    std::span<Key> largest;
    for (std::size_t begin = 0; begin < keys.size();) {
      std::size_t end = begin + 1;
      while (end < keys.size() && CharactersOf(keys[end]) == CharactersOf(keys[begin])) ++end;
      std::span<Key> group = keys.subspan(begin, end - begin);
      begin = end;
      if (EndsWithin(group.front())) continue;
      if (group.size() > largest.size()) std::swap(group, largest);
      Sort(lines, group, depth);
    }
    keys = largest;
  }
}

}  // namespace

std::vector<std::int32_t> AscendingOrder(const ResponseLines& lines) {
  std::vector<Key> keys(static_cast<std::size_t>(lines.Count()));
  for (std::size_t i = 0; i < keys.size(); ++i) keys[i] = i;
  Sort(lines, keys, 0);
  std::vector<std::int32_t> order(keys.size());
  std::ranges::transform(keys, order.begin(), IndexOf);
  return order;
}

}  // namespace oxaqrycln
