// document_access.h - what the commands on documents share: a document as the component takes it, and its notes.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_ACCESS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_ACCESS_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/archive_query.h"
#include "tools/oxaqry/cli/document_name.h"

namespace oxaqrycln::oxaqry {

// The parts of a name as the methods of the component take them. Raises ValueError for a part that has no place in the
// code page.
struct DocumentKey {
  explicit DocumentKey(const DocumentName& name);
  std::string channel;
  std::string archive;
  std::string document;
  std::string version;
};

// The notes of a document: each is its header, a comma and its text. They are not divided, because only the query
// server knows what a header holds. Raises CommandError.
std::vector<std::string> ReadNotes(ArchiveQuery& archive, const DocumentKey& key);
void PrintNotes(const std::vector<std::string>& notes, std::ostream& out);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_ACCESS_H_
