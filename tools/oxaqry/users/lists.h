// user_lists.h - reads the lists that the component's methods on web users give to pages.
// Texts are those of the component's code page.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_LISTS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_LISTS_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// The entries of "^a^,^b^" or "[a],[b]".
std::vector<std::string> ListEntries(std::string_view list);
// The lines "^a^,^b^", each ended by CR LF, as their fields. Raises CommandError for a line of another number of
// fields, as a text with "^,^" or a line end in it makes them.
std::vector<std::vector<std::string>> ListLines(std::string_view lines, std::size_t fieldCount);

// An ID as a number, or as text when it is none.
Json JsonId(const std::string& id);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_LISTS_H_
