// folder_rights.h - the folder rights expression of a query: which channels and archives it may search.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_FOLDER_RIGHTS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_FOLDER_RIGHTS_H_

#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::devserver {

class FolderRights {
 public:
  // Terms "$(#Channel)\Archive", "$(#Channel)\*" or "$(#Channel)", separated by ";"; a ";" at the end is allowed.
  // "" allows everything. Raises ServerError for anything else.
  explicit FolderRights(std::string_view expression);

  // Letter case does not matter.
  bool Allows(std::string_view channel, std::string_view archive) const;

 private:
  struct Term {
    std::string channel;
    std::string archive;  // "*": every archive of the channel
  };
  std::vector<Term> terms_;  // none: everything is allowed
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_FOLDER_RIGHTS_H_
