#include "tools/oxaqry/documents/document_access.h"

#include <ostream>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/table.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {

DocumentKey::DocumentKey(const DocumentName& name)
    : channel(FieldFromUtf8(name.channel)),
      archive(FieldFromUtf8(name.archive)),
      document(FieldFromUtf8(name.document)),
      version(FieldFromUtf8(name.version)) {}

std::vector<std::string> ReadNotes(clsQuery& query, const DocumentKey& key) {
  Variant status;
  const std::int32_t count =
      Count(query.TELOGetNotesInit(key.channel, key.archive, key.document, key.version, &status), status);
  std::vector<std::string> notes;
  for (std::int32_t i = 0; i < count; ++i) notes.push_back(query.TELOGetNotesNext());
  return notes;
}

Json JsonNotes(const std::vector<std::string>& notes) {
  Json list = Json::array();
  for (const std::string& note : notes) list.push_back(ToUtf8(note));
  return list;
}

void PrintNotes(const std::vector<std::string>& notes, std::ostream& out) {
  for (std::size_t i = 0; i < notes.size(); ++i) {
    out << "\n--- Note " << i + 1 << " ---\n" << PrintableLines(notes[i]) << '\n';
  }
}

}  // namespace oxaqrycln::oxaqry
