// document_access.h - what the commands on documents share: a document's name as the component takes it, its notes, a
// question before something is deleted, a text from standard input or a file.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_ACCESS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_ACCESS_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// A document as the methods of the component take it. Raises ValueError for what has no place in the code page.
struct DocumentKey {
  explicit DocumentKey(const DocumentName& name);
  std::string channel;
  std::string archive;
  std::string document;
  std::string version;
};

// The notes, each its header, a comma and its text: what the header holds is the query server's matter, so that nobody
// else can divide them. Raises CommandError.
std::vector<std::string> ReadNotes(clsQuery& query, const DocumentKey& key);
Json JsonNotes(const std::vector<std::string>& notes);
void PrintNotes(const std::vector<std::string>& notes, std::ostream& out);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_ACCESS_H_
