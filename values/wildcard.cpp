#include "values/wildcard.h"

#include <cstddef>

namespace oxaqrycln {

bool MatchesWildcard(std::string_view pattern, std::string_view name) noexcept {
  if (pattern == "*.*") return true;
  std::size_t p = 0;
  std::size_t n = 0;
  std::size_t star = std::string_view::npos;  // the last "*" met, and the position in the name at that time
  std::size_t starName = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      starName = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++starName;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace oxaqrycln
