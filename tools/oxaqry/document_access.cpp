#include "tools/oxaqry/document_access.h"

#include <fstream>
#include <iostream>
#include <iterator>

#include "tools/oxaqry/answers.h"
#include "tools/oxaqry/table.h"
#include "values/code_page.h"

namespace oxaqrycln {
namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20;

}  // namespace

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

std::string PrintableLines(std::string_view text) {
  std::string printable;
  for (std::size_t from = 0;;) {
    const std::size_t end = text.find('\n', from);
    std::string_view line = text.substr(from, end - from);
    if (line.ends_with('\r')) line.remove_suffix(1);
    printable += Printable(line);
    if (end == std::string_view::npos) return printable;
    printable += '\n';
    from = end + 1;
  }
}

std::string ReadAll(const std::string& path, std::istream& in) {
  std::ifstream file;
  if (path != "-") file.open(path, std::ios::binary);
  std::istream& source = path == "-" ? in : file;
  std::string text(std::size_t{1} << 20, '\0');
  std::size_t size = 0;
  while (source.read(text.data() + size, static_cast<std::streamsize>(text.size() - size)) || source.gcount() > 0) {
    size += static_cast<std::size_t>(source.gcount());
    if (size > kMostBytes) throw CommandError("\"" + path + "\" is larger than 64 MiB");
    if (size == text.size()) text.resize(2 * size);
  }
  if (path != "-" && (!file.is_open() || file.bad())) {
    throw CommandError("cannot read \"" + path + "\": check that it exists and is a readable file");
  }
  text.resize(size);
  return text;
}

void Confirm(const std::string& question, bool yes, const Output& output) {
  if (yes) return;
  if (!output.terminals.in) throw UsageError("there is no terminal to ask on: give --yes to delete without a question");
  output.err << question << " [y/N] " << std::flush;
  std::string answer;
  std::getline(output.in, answer);
  if (answer != "y" && answer != "Y" && answer != "yes") throw CommandError("nothing was deleted");
}

}  // namespace oxaqrycln
