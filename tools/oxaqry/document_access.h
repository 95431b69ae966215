// document_access.h - what the commands on documents share: a document's name as the component takes it, its notes, a
// question before something is deleted, a text from standard input or a file.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENT_ACCESS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENT_ACCESS_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/oxaqry/commands.h"
#include "tools/oxaqry/document_name.h"
#include "tools/oxaqry/value_json.h"

namespace oxaqrycln {

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

// A text of several lines for a terminal, each line as by Printable.
std::string PrintableLines(std::string_view text);

// Everything of a file, or of the input for "-"; raises CommandError, also for more than 64 MiB.
std::string ReadAll(const std::string& path, std::istream& in);

// Asks on a terminal whether to go on; raises CommandError when the answer is not yes, and UsageError where nobody can
// be asked. Nothing is asked when the answer was given beforehand.
void Confirm(const std::string& question, bool yes, const Output& output);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENT_ACCESS_H_
