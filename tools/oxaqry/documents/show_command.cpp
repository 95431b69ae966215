// The command "show": a document with its segments, texts and notes.
#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/notes.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr const char* kReverse = "\x1B[1;7m";
constexpr const char* kPlain = "\x1B[0m";

struct ShowRequest {
  DocumentName document;
  std::string query;
  std::string markOn;  // around the hits; without both a terminal shows them in reverse video
  std::string markOff;
};

// For a terminal, without anything in the text that could drive it. A mark ends with its line and goes on in the next.
std::string InReverse(const std::string& text) {
  std::string shown = kReverse;
  for (const char character : text)
    shown += character == '\n' ? std::string(kPlain) + "\n" + kReverse : std::string(1, character);
  return shown + kPlain;
}

std::string ShownText(const client::MarkedText& text, const ShowRequest& request, bool color) {
  const bool hasMarks = !request.markOn.empty() || !request.markOff.empty();
  std::string shown;
  for (const client::TextPiece& piece : text.Pieces()) {
    const std::string plain = PrintableLines(piece.text);
    if (!piece.isMarked) {
      shown += plain;
    } else if (hasMarks) {
      shown += request.markOn + plain + request.markOff;
    } else {
      shown += color ? InReverse(plain) : plain;
    }
  }
  return shown;
}

Json JsonOf(const client::Segment& segment, const ShowRequest& request) {
  Json marks = Json::array();
  for (const client::Mark& mark : segment.text.marks) marks.push_back({{"start", mark.start}, {"length", mark.length}});
  std::string text;
  for (const client::TextPiece& piece : segment.text.Pieces()) {
    text += piece.isMarked ? request.markOn + piece.text + request.markOff : piece.text;
  }
  return {{"index", segment.index},
          {"id", segment.fieldId},
          {"name", segment.name},
          {"title", segment.title},
          {"type", segment.type},
          {"textLength", segment.textLength},
          {"hits", segment.hitCount},
          {"contentLength", segment.contentLength},
          {"extension", segment.extension},
          {"file", segment.fileName},
          {"status", segment.status},
          {"layout", segment.layout},
          {"thumbnailSize", segment.thumbnailSize},
          {"text", std::move(text)},
          {"marks", std::move(marks)}};
}

Json JsonOf(const client::Document& document, const ShowRequest& request) {
  Json segments = Json::array();
  for (const client::Segment& segment : document.segments) segments.push_back(JsonOf(segment, request));
  return {{"name", ToText(document.name)},     {"title", document.title},
          {"created", document.created},       {"changed", document.changed},
          {"length", document.length},         {"fields", document.fieldCount},
          {"textFields", document.textCount},  {"imageFields", document.imageCount},
          {"fileFields", document.fileCount},  {"segments", std::move(segments)},
          {"notes", NotesJson(document.notes)}};
}

Table InformationTable(const client::Document& document) {
  Table table({"Property", "Value"});
  table.Add({"Document", Printable(ToText(document.name))});
  table.Add({"Title", Printable(document.title)});
  table.Add({"Created", Printable(document.created)});
  table.Add({"Changed", Printable(document.changed)});
  table.Add({"Length", std::to_string(document.length)});
  table.Add({"Fields", std::to_string(document.fieldCount) + " (" + std::to_string(document.textCount) + " text, " +
                           std::to_string(document.imageCount) + " image, " + std::to_string(document.fileCount) +
                           " file)"});
  return table;
}

Table SegmentTable(const std::vector<client::Segment>& segments) {
  Table table({"#", "ID", "Name", "Title", "Type", "Ext", "File", "Text", "Content", "Hits"});
  for (const client::Segment& segment : segments) {
    table.Add(
        Cells({std::to_string(segment.index), std::to_string(segment.fieldId), segment.name, segment.title,
               std::to_string(segment.type), segment.extension, segment.fileName, std::to_string(segment.textLength),
               std::to_string(segment.contentLength), std::to_string(segment.hitCount)}));
  }
  return table;
}

std::string TextOf(const client::Document& document, const ShowRequest& request, const Output& output) {
  const std::size_t columns = TerminalColumns(output);
  std::string text = InformationTable(document).Text(columns) + "\n" + SegmentTable(document.segments).Text(columns);
  for (const client::Segment& segment : document.segments) {
    if (segment.text.text.empty()) continue;
    text += "\n--- Segment " + std::to_string(segment.index) + ": " + Printable(segment.name) + " ---\n" +
            ShownText(segment.text, request, output.color) + "\n";
  }
  return text + NotesText(document.notes);
}

int Show(const Settings& settings, const ShowRequest& request, const Output& output) {
  const client::Document document = OpenArchive(settings, output).Open(request.document, request.query);
  return PrintResult(output, output.json ? JsonOf(document, request) : Json(),
                     output.json ? "" : TextOf(document, request, output));
}

}  // namespace

void AddShow(CommandParser& parser) {
  const auto [show, request] = parser.AddQuery(
      parser.app(), "show", "show a document with its segments, texts and notes",
      "Examples:\n  oxaqry show Mail/Inbox/1262 --hosts localhost,2001\n"
      "  oxaqry show Mail/Inbox/1262/2 --query 'price' --hosts localhost,2001\n"
      "  oxaqry show Mail/Inbox/1001 --query oak --mark-on '<b>' --mark-off '</b>' --json --hosts localhost,2001",
      Show);
  AddDocumentArgument(*show, request->document);
  show->add_option("--query", request->query,
                   "mark the hits of this query in the texts: in reverse video on a terminal, unless NO_COLOR is set")
      ->type_name("QUERY");
  show->add_option("--mark-on", request->markOn, "text before a hit instead of reverse video")->type_name("TEXT");
  show->add_option("--mark-off", request->markOff, "text after a hit")->type_name("TEXT");
}

}  // namespace oxaqrycln::oxaqry
