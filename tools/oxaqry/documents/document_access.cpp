#include "tools/oxaqry/documents/document_access.h"

#include <ostream>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

DocumentKey::DocumentKey(const DocumentName& name)
    : channel(FieldFromUtf8(name.channel)),
      archive(FieldFromUtf8(name.archive)),
      document(FieldFromUtf8(name.document)),
      version(FieldFromUtf8(name.version)) {}

std::vector<std::string> ReadNotes(ArchiveQuery& archive, const DocumentKey& key) {
  std::vector<std::string> notes;
  const std::int32_t count =
      archive.Count(archive->TELOGetNotesInit(key.channel, key.archive, key.document, key.version, archive.status()));
  archive.ForEach(count, "note", [&](std::int32_t) { notes.push_back(archive->TELOGetNotesNext()); });
  return notes;
}

void PrintNotes(const std::vector<std::string>& notes, std::ostream& out) {
  for (std::size_t i = 0; i < notes.size(); ++i) {
    out << "\n--- Note " << i + 1 << " ---\n" << PrintableLines(notes[i]) << '\n';
  }
}

}  // namespace oxaqrycln::oxaqry
