// The command "show": a document with its segments, texts and notes.
#include <array>
#include <ostream>

#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/document_access.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// The marks that are sent when hits are shown on a terminal: bytes that no text holds. They are replaced when the text
// is printed, so that nothing else in it can drive the terminal.
constexpr char kMarkOn = '\x01';
constexpr char kMarkOff = '\x02';
constexpr std::string_view kReverse = "\x1B[1;7m";
constexpr std::string_view kPlain = "\x1B[0m";

struct ShowRequest {
  DocumentName document;
  std::string query;
  std::string markOn;  // around the hits; without both a terminal shows them in reverse video
  std::string markOff;
};

// The outputs of the method, in its order.
constexpr std::array kInformationKeys{"length", "created",    "changed",     "title",
                                      "fields", "textFields", "imageFields", "fileFields"};
enum InformationValue : std::size_t { kLength, kCreated, kChanged, kDocumentTitle, kFields, kTexts, kImages, kFiles };
using Information = std::array<Variant, kInformationKeys.size()>;

// The outputs of the method, in its order; the first four are the name of the document.
constexpr std::array kSegmentKeys{"channel", "archive",    "document", "version",       "index",        "id",
                                  "name",    "textLength", "hits",     "contentLength", "extension",    "type",
                                  "title",   "file",       "status",   "layout",        "thumbnailSize"};
enum SegmentValue : std::size_t {
  kVersion = 3,
  kIndex,
  kId,
  kName,
  kTextLength,
  kHits,
  kContentLength,
  kExtension,
  kType,
  kTitle,
  kFile
};
struct Segment {
  std::array<Variant, kSegmentKeys.size()> values;
  std::string text;
};

struct Document {
  DocumentName name;
  Information information;
  std::vector<Segment> segments;
  std::vector<std::string> notes;
};

Information ReadInformation(ArchiveQuery& archive, const DocumentKey& key) {
  Information found;
  const std::int32_t lines = archive.Count(archive->TELOGetDocumentInfo(
      key.channel, key.archive, key.document, key.version, &found[kLength], &found[kCreated], &found[kChanged],
      &found[kDocumentTitle], &found[kFields], &found[kTexts], &found[kImages], &found[kFiles], archive.status()));
  if (lines == 0) throw CommandError("the query server knows nothing about this document");
  // A line that cannot be read leaves the outputs unwritten.
  if (found.back().IsEmpty()) {
    throw CommandError(
        "the document's information is malformed: see the log (--log-dir) and ask the query server's operator");
  }
  return found;
}

std::vector<Segment> ReadSegments(ArchiveQuery& archive, const DocumentKey& key, const ShowRequest& request,
                                  bool color) {
  const bool marksTerminal = color && request.markOn.empty() && request.markOff.empty();
  const std::string on = marksTerminal ? std::string(1, kMarkOn) : FieldFromUtf8(request.markOn);
  const std::string off = marksTerminal ? std::string(1, kMarkOff) : FieldFromUtf8(request.markOff);
  std::vector<Segment> segments;
  const std::int32_t count = archive.Count(
      archive->TELOGetSegmentsInit(key.channel, key.archive, key.document, key.version, FieldFromUtf8(request.query),
                                   on, off, "\n", Missing, Missing, Missing, nullptr, archive.status()));
  archive.ForEach(count, "segment", [&](std::int32_t) {
    Segment next;
    auto& out = next.values;
    next.text =
        archive->TELOGetSegmentsNext(out.data(), &out[1], &out[2], &out[3], &out[4], &out[5], &out[6], &out[7], &out[8],
                                     &out[9], &out[10], &out[11], &out[12], &out[13], &out[14], &out[15], &out[16]);
    segments.push_back(std::move(next));
  });
  return segments;
}

// A line may end inside a mark: it is closed there and opened again.
std::string Marked(std::string_view text) {
  std::string shown;
  std::string plain;
  bool isMarked = false;
  const auto flush = [&] { shown += PrintableLines(std::exchange(plain, "")); };
  for (const char character : text) {
    if (character != kMarkOn && character != kMarkOff && character != '\n') {
      plain += character;
      continue;
    }
    flush();
    if (isMarked) shown += kPlain;
    if (character == '\n') {
      shown += '\n';
    } else {
      isMarked = character == kMarkOn;
    }
    if (isMarked) shown += kReverse;
  }
  flush();
  if (isMarked) shown += kPlain;
  return shown;
}

Json JsonOf(const Document& document) {
  Json json{{"name", ToText(document.name)}};
  for (std::size_t i = 0; i < kInformationKeys.size(); ++i) {
    json[kInformationKeys[i]] = JsonFromValue(document.information[i]);
  }
  Json segments = Json::array();
  for (const Segment& segment : document.segments) {
    Json object = Json::object();
    for (std::size_t i = kIndex; i < kSegmentKeys.size(); ++i)
      object[kSegmentKeys[i]] = JsonFromValue(segment.values[i]);
    object["text"] = ToUtf8(segment.text);
    segments.push_back(std::move(object));
  }
  json["segments"] = std::move(segments);
  json["notes"] = JsonList(document.notes);
  return json;
}

Table InformationTable(const Document& document) {
  const auto text = [&](InformationValue which) { return Printable(document.information[which].ToText()); };
  Table table({"Property", "Value"});
  table.Add({"Document", ToText(document.name)});
  table.Add({"Title", text(kDocumentTitle)});
  table.Add({"Created", text(kCreated)});
  table.Add({"Changed", text(kChanged)});
  table.Add({"Length", text(kLength)});
  table.Add({"Fields",
             text(kFields) + " (" + text(kTexts) + " text, " + text(kImages) + " image, " + text(kFiles) + " file)"});
  return table;
}

void PrintSegments(const std::vector<Segment>& segments, const Output& output) {
  std::ostream& out = output.out;
  Table table({"#", "ID", "Name", "Title", "Type", "Ext", "File", "Text", "Content", "Hits"});
  for (const auto& [values, text] : segments) {
    std::vector<std::string> texts;
    for (const SegmentValue each :
         {kIndex, kId, kName, kTitle, kType, kExtension, kFile, kTextLength, kContentLength, kHits}) {
      texts.push_back(values[each].ToText());
    }
    table.Add(Cells(texts));
  }
  out << '\n' << table.Text(TerminalColumns(output));
  for (const auto& [values, text] : segments) {
    if (text.empty()) continue;
    out << "\n--- Segment " << values[kIndex].ToText() << ": " << Printable(values[kName].ToText()) << " ---\n"
        << Marked(text) << '\n';
  }
}

int Show(const Settings& settings, const ShowRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  ArchiveQuery archive(settings, output);
  Document document;
  document.name = request.document;
  document.information = ReadInformation(archive, key);
  document.segments = ReadSegments(archive, key, request, output.color && !output.json);
  document.notes = ReadNotes(archive, key);
  // The version that was found where none was asked for.
  if (key.version.empty() && !document.segments.empty()) {
    const std::string version = document.segments.front().values[kVersion].ToText();
    if (IsPrintable(version)) document.name.version = ToUtf8(version);
  }
  PrintResult(output, JsonOf(document), InformationTable(document).Text(TerminalColumns(output)));
  if (output.json) return 0;
  PrintSegments(document.segments, output);
  PrintNotes(document.notes, output.out);
  return 0;
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
