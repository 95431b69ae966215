#include "tools/devserver/commands/handlers.h"

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/protocol/answer_text.h"
#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::size_t kLongestNote = 8000;
constexpr std::int64_t kMostNotes = 1000;

std::string Replace(std::string text, const std::string& old, const std::string& replacement) {
  if (old.empty()) return text;
  for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + replacement.size())) {
    text.replace(at, old.size(), replacement);
  }
  return text;
}

}  // namespace

Reply GetNotes(const Call& call) {
  Statement query(call.database, "SELECT author || ',' || written, text FROM note WHERE document_id = ? ORDER BY id",
                  FindDocument(call.database, call.parameters).id);
  std::string lines;
  while (query.executeStep()) lines += query.Text(0) + "\r\n^" + WithLineEnds(query.Text(1)) + "^\r\n";
  return lines;
}

Reply WriteNote(const Call& call) {
  Transaction transaction(call.database);
  const Document document = FindDocument(call.database, call.parameters);
  if (call.parameters[4].size() > kLongestNote) {
    throw ServerError("The note is longer than " + std::to_string(kLongestNote) + " characters");
  }
  const std::string note = CleanText(Replace(call.parameters[4], call.parameters[5], "\n"));
  if (note.empty()) throw ServerError("The note is empty");
  if (NoteCount(call.database, document) >= kMostNotes) {
    throw ServerError("Document " + std::to_string(document.id) + " has " + std::to_string(kMostNotes) + " notes");
  }
  Statement(call.database, "INSERT INTO note (document_id, author, written, text) VALUES (?, ?, ?, ?)", document.id,
            CleanText(call.user), LocalTime("%d.%m.%Y %H:%M"), note)
      .Run();
  transaction.commit();
  return std::string();
}

Reply DeleteNotes(const Call& call) {
  Statement(call.database, "DELETE FROM note WHERE document_id = ?", FindDocument(call.database, call.parameters).id)
      .Run();
  return std::string();
}

Reply GetMasks(const Call& call) {
  Statement masks(call.database, "SELECT archive_id, position, name FROM mask WHERE archive_id = ? ORDER BY position",
                  FindArchive(call.database, call.parameters).id);
  std::string lines;
  while (masks.executeStep()) {
    lines += "@" + masks.Text(2) + "\r\n";
    Statement fields(call.database,
                     "SELECT tab_index, width, align, name, mandatory, init_text, list_only, list FROM mask_field "
                     "WHERE archive_id = ? AND mask = ? ORDER BY tab_index",
                     masks.Number(0), masks.Number(1));
    while (fields.executeStep()) lines += Record(fields.Texts()) + "\r\n";
  }
  return lines;
}

}  // namespace oxaqrycln::devserver
