// The commands "note add", "note list" and "note delete".
#include <ostream>

#include "client/text.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/documents/document_access.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::size_t kLongestNote = 8000;  // characters; the component cuts what is longer

struct NoteRequest {
  DocumentName document;
  std::string text;  // "-" for standard input
  bool yes = false;  // delete without asking
};

void PrintDone(const Output& output, const DocumentName& document, const std::string& what) {
  PrintResult(output, {{"name", ToText(document)}, {"done", true}}, what + ToText(document));
}

int AddNote(const Settings& settings, const NoteRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  const std::string text = request.text == "-" ? ReadAll(request.text, output.in) : request.text;
  const std::string note = client::WithNetworkLineEnds(FieldFromUtf8(text));
  if (note.size() > kLongestNote) {
    throw CommandError("the note has " + std::to_string(note.size()) + " characters; a note holds 8000");
  }
  ArchiveQuery archive(settings, output);
  archive.Count(
      archive->TELOWriteNote(key.channel, key.archive, key.document, key.version, note, Missing, archive.status()));
  PrintDone(output, request.document, "Attached a note to ");
  return 0;
}

int ListNotes(const Settings& settings, const NoteRequest& request, const Output& output) {
  ArchiveQuery archive(settings, output);
  const std::vector<std::string> notes = ReadNotes(archive, DocumentKey(request.document));
  const std::string name = ToText(request.document);
  PrintResult(output, {{"name", name}, {"notes", JsonList(notes)}},
              name + " has " + (notes.empty() ? "no" : std::to_string(notes.size())) +
                  (notes.size() == 1 ? " note" : " notes"));
  if (!output.json) PrintNotes(notes, output.out);
  return 0;
}

int DeleteNotes(const Settings& settings, const NoteRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  Confirm("Delete all notes of " + ToText(request.document) + "?", request.yes, output);
  ArchiveQuery archive(settings, output);
  archive.Count(archive->TELODeleteNotes(key.channel, key.archive, key.document, key.version, archive.status()));
  PrintDone(output, request.document, "Deleted all notes of ");
  return 0;
}

}  // namespace

void AddNoteCommands(CommandParser& parser) {
  CLI::App* const note = parser.AddGroup("note", "attach, list or delete the notes of a document",
                                         "Example:\n  oxaqry note list Mail/Inbox/1262 --hosts localhost,2001");
  const auto [add, added] =
      parser.AddQuery(*note, "add", "attach a note to a document",
                      "Examples:\n  oxaqry note add Mail/Inbox/1262 'Answered by phone' --hosts localhost,2001\n"
                      "  oxaqry note add Mail/Inbox/1262 - < note.txt --hosts localhost,2001",
                      AddNote);
  AddDocumentArgument(*add, added->document);
  add->add_option("TEXT", added->text, "the note, at most 8000 characters; \"-\" reads standard input")->required();
  const auto [list, listed] =
      parser.AddQuery(*note, "list", "list the notes of a document",
                      "Example:\n  oxaqry note list Mail/Inbox/1262 --hosts localhost,2001", ListNotes);
  AddDocumentArgument(*list, listed->document);
  const auto [remove, removed] =
      parser.AddQuery(*note, "delete", "delete all notes of a document",
                      "Example:\n  oxaqry note delete Mail/Inbox/1262 --yes --hosts localhost,2001", DeleteNotes);
  AddDocumentArgument(*remove, removed->document);
  remove->add_flag("--yes", removed->yes, "delete without asking");
}

}  // namespace oxaqrycln::oxaqry
