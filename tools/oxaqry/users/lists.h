// lists.h - reads the lists that the component's methods on web users return, which are Windows-1252, as JSON.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_LISTS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_LISTS_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// An ID as a number, or as text when it is none.
Json JsonId(const std::string& id);

// The entries of "^a^,^b^" or "[a],[b]" as an array of texts, or of IDs.
Json TextEntries(std::string_view list);
Json IdEntries(std::string_view list);
// The lines "^a^,^b^", each ended by CR LF, as an array of objects with these members; the first ones are IDs. Raises
// CommandError for a line of another number of fields, which a text with "^,^" or a line end in it produces.
Json LineObjects(std::string_view lines, std::size_t idCount, const std::vector<const char*>& members);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_LISTS_H_
