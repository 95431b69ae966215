// The commands "note add", "note list" and "note delete".
#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/notes.h"

namespace oxaqrycln::oxaqry {
namespace {

struct NoteRequest {
  DocumentName document;
  std::string text;  // "-" for standard input
  bool yes = false;  // delete without asking
};

int PrintDone(const Output& output, const DocumentName& document, const std::string& what) {
  return PrintResult(output, {{"name", ToText(document)}, {"done", true}}, what + ToText(document));
}

int AddNote(const Settings& settings, const NoteRequest& request, const Output& output) {
  const std::string text = request.text == "-" ? ReadAll(request.text, output.in) : request.text;
  OpenArchive(settings, output).AddNote(request.document, text);
  return PrintDone(output, request.document, "Attached a note to ");
}

int ListNotes(const Settings& settings, const NoteRequest& request, const Output& output) {
  const std::vector<client::Note> notes = OpenArchive(settings, output).Notes(request.document);
  const std::string name = ToText(request.document);
  const std::string count = notes.empty() ? "no" : std::to_string(notes.size());
  return PrintResult(output, {{"name", name}, {"notes", NotesJson(notes)}},
                     name + " has " + count + (notes.size() == 1 ? " note" : " notes") + "\n" + NotesText(notes));
}

int DeleteNotes(const Settings& settings, const NoteRequest& request, const Output& output) {
  Confirm("Delete all notes of " + ToText(request.document) + "?", request.yes, output);
  OpenArchive(settings, output).DeleteNotes(request.document);
  return PrintDone(output, request.document, "Deleted all notes of ");
}

}  // namespace

Json NotesJson(const std::vector<client::Note>& notes) {
  Json list = Json::array();
  for (const client::Note& note : notes) {
    list.push_back({{"author", note.author}, {"time", note.time}, {"text", note.text}});
  }
  return list;
}

std::string NotesText(const std::vector<client::Note>& notes) {
  std::string text;
  for (std::size_t i = 0; i < notes.size(); ++i) {
    std::string header = "Note " + std::to_string(i + 1);
    if (!notes[i].time.empty()) header += ": " + Printable(notes[i].author) + ", " + notes[i].time;
    text += "\n--- " + header + " ---\n" + PrintableLines(notes[i].text) + "\n";
  }
  return text;
}

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
