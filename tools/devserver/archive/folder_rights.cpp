#include "tools/devserver/archive/folder_rights.h"

#include <algorithm>

#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"

namespace oxaqrycln::devserver {

FolderRights::FolderRights(std::string_view expression) : everything_(expression.empty()) {
  while (!expression.empty()) {
    const std::size_t semicolon = expression.find(';');
    const std::string_view term = expression.substr(0, semicolon);
    expression.remove_prefix(semicolon == std::string_view::npos ? expression.size() : semicolon + 1);

    const std::size_t close = term.find(')');
    const bool opens = term.starts_with("$(#") && close != std::string_view::npos && close > 3;
    const std::string_view rest = opens ? term.substr(close + 1) : std::string_view();
    if (!opens || (!rest.empty() && (rest.front() != '\\' || rest.size() == 1))) {
      throw ServerError("Folder rights: '" + Printable(term) + "' is not of the form $(#Channel)\\Archive");
    }
    terms_.push_back({UpperCase(term.substr(3, close - 3)), rest.empty() ? "*" : UpperCase(rest.substr(1))});
  }
}

bool FolderRights::Allows(std::string_view channel, std::string_view archive) const {
  if (everything_) return true;
  return std::any_of(terms_.begin(), terms_.end(),
                     [wantedChannel = UpperCase(channel), wantedArchive = UpperCase(archive)](const Term& term) {
                       return term.channel == wantedChannel && (term.archive == "*" || term.archive == wantedArchive);
                     });
}

}  // namespace oxaqrycln::devserver
