// suggestion.h - finds the word that was probably meant.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_SUGGESTION_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_SUGGESTION_H_

#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::oxaqry {

// "; did you mean "WORD"?" with the word that differs least from the one given, in any letter case; "" when none is
// near.
std::string DidYouMean(std::string_view given, const std::vector<std::string>& words);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_SUGGESTION_H_
