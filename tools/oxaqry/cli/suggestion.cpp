#include "tools/oxaqry/cli/suggestion.h"

#include <algorithm>
#include <cstddef>

#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// The number of characters to insert, delete or replace, or of neighbours to swap, to make one word of the other.
std::size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> beforeLast(right.size() + 1);
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> current(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) current[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    beforeLast.swap(last);
    last.swap(current);
    current[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
      current[j] = std::min({last[j] + 1, current[j - 1] + 1, replaced});
      const bool isSwapped = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (isSwapped) current[j] = std::min(current[j], beforeLast[j - 2] + 1);
    }
  }
  return current.back();
}

}  // namespace

std::string DidYouMean(std::string_view given, const std::vector<std::string>& words) {
  constexpr std::size_t kLongestWord = 100;  // no word is as long, and the comparison is quadratic
  if (given.size() > kLongestWord) return "";
  const std::string wanted = LowerCase(given);
  const std::string* nearest = nullptr;
  std::size_t least = (wanted.size() + 1) / 3 + 1;  // not included
  for (const std::string& word : words) {
    const std::size_t distance = Distance(wanted, LowerCase(word));
    if (distance >= least) continue;
    least = distance;
    nearest = &word;
  }
  return nearest == nullptr ? "" : "; did you mean \"" + *nearest + "\"?";
}

}  // namespace oxaqrycln::oxaqry
