// notes.h - notes of a document as text and as JSON.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_NOTES_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_NOTES_H_

#include <string>
#include <vector>

#include "client/document.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// A list of objects with author, time and text.
Json NotesJson(const std::vector<client::Note>& notes);
// Each below a line with its number, author and time.
std::string NotesText(const std::vector<client::Note>& notes);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_NOTES_H_
