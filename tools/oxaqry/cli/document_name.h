// document_name.h - the name of a document on the command line: CHANNEL/ARCHIVE/DOCUMENT[/VERSION], UTF-8.
// A "/" inside a part is written "%2F", a "%" "%25".
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_DOCUMENT_NAME_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_DOCUMENT_NAME_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::oxaqry {

struct DocumentName {
  std::string channel;
  std::string archive;
  std::string document;
  std::string version;  // "" for the current one
};

// The parts between the slashes, with "%2F" and "%25" decoded; any other "%" is kept.
std::vector<std::string> SplitName(std::string_view text);

// Nothing for a text that does not name a document.
std::optional<DocumentName> ParseDocumentName(std::string_view text);
// The text that ParseDocumentName reads, without a version when there is none.
std::string ToText(const DocumentName& name);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_DOCUMENT_NAME_H_
