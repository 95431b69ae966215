// document_name.h - the name of a document on the command line: CHANNEL/ARCHIVE/DOCUMENT[/VERSION], UTF-8.
// A "/" inside a part is written "%2F", a "%" "%25".
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_DOCUMENT_NAME_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_DOCUMENT_NAME_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "client/hit_list.h"

namespace oxaqrycln::oxaqry {

using client::DocumentName;

// The parts between the slashes, with "%2F" and "%25" decoded; any other "%" is kept.
std::vector<std::string> SplitName(std::string_view text);

// Nothing for a text that does not name a document.
std::optional<DocumentName> ParseDocumentName(std::string_view text);
// The text that ParseDocumentName reads, without a version when there is none.
std::string ToText(const DocumentName& name);
// "CHANNEL/ARCHIVE"
std::string ArchiveText(std::string_view channel, std::string_view archive);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_DOCUMENT_NAME_H_
