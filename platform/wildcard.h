// wildcard.h - names that match a pattern with "*" and "?", found one after the other.
#ifndef OXAQRYCLN_PLATFORM_WILDCARD_H_
#define OXAQRYCLN_PLATFORM_WILDCARD_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln {

// True when the name matches: "*" stands for any characters, "?" for one; "*.*" matches every name.
bool MatchesWildcard(std::string_view pattern, std::string_view name) noexcept;

// Which entries a probe finds besides normal files.
enum class ProbeFor { Files = 0, FilesAndDirectories = 16 };

// An error-free search for the entries that match a path whose last part may be a pattern.
class DirectoryProbe {
 public:
  // The first matching name (without its directory), or "" when there is none or on any error.
  // With FilesAndDirectories a directory's "." and ".." are left out.
  std::string First(std::string_view path, ProbeFor kind = ProbeFor::Files) noexcept;
  // The next match of the last First, or "".
  std::string Next() noexcept;

 private:
  std::vector<std::string> names_;
  std::size_t next_ = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_WILDCARD_H_
