// wildcard.h - matching of a name against a pattern with "*" and "?".
#ifndef OXAQRYCLN_VALUES_WILDCARD_H_
#define OXAQRYCLN_VALUES_WILDCARD_H_

#include <string_view>

namespace oxaqrycln {

// True when the name matches: "*" matches any characters, "?" one; "*.*" matches every name.
bool MatchesWildcard(std::string_view pattern, std::string_view name) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_WILDCARD_H_
