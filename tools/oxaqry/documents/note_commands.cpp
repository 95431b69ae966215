// The commands "note" and "masks": texts attached to a document, and the input forms of an archive.
#include <array>
#include <ostream>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/document_access.h"
#include "tools/oxaqry/documents/document_commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::size_t kLongestNote = 8000;  // characters; the component cuts what is longer

// Every line end as CR LF, none behind the last line.
std::string WithNetworkLineEnds(std::string_view text) {
  std::string lines;
  while (text.ends_with('\n') || text.ends_with('\r')) text.remove_suffix(1);
  for (const char character : text) {
    if (character == '\n' && !lines.ends_with('\r')) lines += '\r';
    lines += character;
  }
  return lines;
}

void PrintDone(const Output& output, const DocumentName& document, const char* what) {
  if (output.json) {
    output.out << Json{{"name", ToText(document)}, {"done", true}}.dump(2) << '\n';
  } else {
    output.out << what << ToText(document) << '\n';
  }
}

constexpr std::array kFieldKeys{"tabIndex", "width", "align", "name", "mandatory", "initialText", "listOnly", "list"};
using MaskField = std::array<Variant, kFieldKeys.size()>;

MaskField NextField(clsQuery& query) {
  MaskField field;
  query.TELOGetMasksNextField(field.data(), &field[1], &field[2], &field[3], &field[4], &field[5], &field[6],
                              &field[7]);
  // What cannot be read leaves the last output unwritten, and the walk stands still.
  if (field.back().IsEmpty()) {
    throw CommandError("a mask is malformed: see the log (--log-dir) and ask the query server's operator");
  }
  return field;
}

}  // namespace

int AddNote(const Settings& settings, const DocumentName& document, const std::string& text, const Output& output) {
  const DocumentKey key(document);
  const std::string note = WithNetworkLineEnds(FieldFromUtf8(text == "-" ? ReadAll(text, output.in) : text));
  if (note.size() > kLongestNote) {
    throw CommandError("the note has " + std::to_string(note.size()) + " characters; a note holds 8000");
  }
  const auto query = settings.Connect();
  Variant status;
  Count(query->TELOWriteNote(key.channel, key.archive, key.document, key.version, note, Missing, &status), status);
  PrintDone(output, document, "Attached a note to ");
  return 0;
}

int ListNotes(const Settings& settings, const DocumentName& document, const Output& output) {
  const auto query = settings.Connect();
  const std::vector<std::string> notes = ReadNotes(*query, DocumentKey(document));
  if (output.json) {
    output.out << Json{{"name", ToText(document)}, {"notes", JsonNotes(notes)}}.dump(2) << '\n';
    return 0;
  }
  output.out << ToText(document) << " has " << (notes.empty() ? "no" : std::to_string(notes.size()))
             << (notes.size() == 1 ? " note\n" : " notes\n");
  PrintNotes(notes, output.out);
  return 0;
}

int DeleteNotes(const Settings& settings, const DeleteRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  Confirm("Delete all notes of " + ToText(request.document) + "?", request.yes, output);
  const auto query = settings.Connect();
  Variant status;
  Count(query->TELODeleteNotes(key.channel, key.archive, key.document, key.version, &status), status);
  PrintDone(output, request.document, "Deleted all notes of ");
  return 0;
}

int Masks(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output) {
  const auto query = settings.Connect();
  Variant status;
  const std::int32_t count =
      Count(query->TELOGetMasksInit(FieldFromUtf8(channel), FieldFromUtf8(archive), &status), status);
  Table table({"Mask", "Tab", "Width", "Align", "Field", "Mandatory", "Initial text", "List only", "List"});
  Json masks = Json::array();
  for (std::int32_t i = 0; i < count; ++i) {
    Variant name;
    const std::int32_t fieldCount = query->TELOGetMasksNext(&name).ToLong();
    Json fields = Json::array();
    for (std::int32_t k = 0; k < fieldCount; ++k) {
      const MaskField field = NextField(*query);
      Json object = Json::object();
      std::vector<std::string> cells{Printable(name.ToText())};
      for (std::size_t n = 0; n < field.size(); ++n) {
        object[kFieldKeys[n]] = ToUtf8(field[n].ToText());
        cells.push_back(Printable(field[n].ToText()));
      }
      fields.push_back(std::move(object));
      table.Add(std::move(cells));
    }
    if (fieldCount <= 0) table.Add({Printable(name.ToText())});
    masks.push_back({{"mask", ToUtf8(name.ToText())}, {"fields", std::move(fields)}});
  }
  if (output.json) {
    output.out << Json{{"masks", std::move(masks)}}.dump(2) << '\n';
  } else {
    table.Print(output.out);
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
