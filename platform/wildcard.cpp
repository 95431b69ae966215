#include "platform/wildcard.h"

#include "platform/files.h"

namespace oxaqrycln {

bool MatchesWildcard(std::string_view pattern, std::string_view name) noexcept {
  if (pattern == "*.*") return true;
  std::size_t p = 0;
  std::size_t n = 0;
  std::size_t star = std::string_view::npos;  // the last "*" met, and where the name stood then
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

std::string DirectoryProbe::First(std::string_view path, ProbeFor kind) noexcept {
  names_.clear();
  next_ = 0;
  try {
    const std::string_view pattern = LastPathPart(path);
    for (auto& entry : ListDirectory(path.substr(0, path.size() - pattern.size()))) {
      if (entry.isDirectory && kind == ProbeFor::Files) continue;
      if (MatchesWildcard(pattern, entry.name)) names_.push_back(std::move(entry.name));
    }
  } catch (...) {  // an error finds nothing
    names_.clear();
  }
  return Next();
}

std::string DirectoryProbe::Next() noexcept {
  if (next_ >= names_.size()) return {};
  return std::move(names_[next_++]);
}

}  // namespace oxaqrycln
