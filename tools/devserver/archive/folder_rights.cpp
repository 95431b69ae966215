#include "tools/devserver/archive/folder_rights.h"

#include <algorithm>

#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::devserver {

FolderRights::FolderRights(std::string_view expression) {
  std::vector<std::string_view> terms = Split(expression, ';');
  if (terms.size() > 1 && terms.back().empty()) terms.pop_back();
  for (const std::string_view term : terms) {
    const std::size_t close = term.find(')');
    const bool hasChannel = term.starts_with("$(#") && close != std::string_view::npos && close > 3;
    const std::string_view rest = hasChannel ? term.substr(close + 1) : std::string_view();
    if (!hasChannel || (!rest.empty() && (rest.front() != '\\' || rest.size() == 1))) {
      throw ServerError("Folder rights: '" + Printable(term) + "' is not of the form $(#Channel)\\Archive");
    }
    terms_.push_back({UpperCase(term.substr(3, close - 3)), rest.empty() ? "*" : UpperCase(rest.substr(1))});
  }
}

bool FolderRights::Allows(std::string_view channel, std::string_view archive) const {
  return terms_.empty() || std::ranges::any_of(terms_, [&](const Term& term) {
           return term.channel == UpperCase(channel) && (term.archive == "*" || term.archive == UpperCase(archive));
         });
}

}  // namespace oxaqrycln::devserver
