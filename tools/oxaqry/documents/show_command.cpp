// The command "show": a document with its segments, texts and notes.
#include <array>
#include <ostream>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/document_access.h"
#include "tools/oxaqry/documents/document_commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// What is sent as marks where a terminal shows them: bytes that no text holds, replaced when it is printed, so that
// nothing else in a text can drive the terminal.
constexpr char kMarkOn = '\x01';
constexpr char kMarkOff = '\x02';
constexpr std::string_view kReverse = "\x1B[1;7m";
constexpr std::string_view kPlain = "\x1B[0m";

struct Information {
  Variant length;
  Variant created;
  Variant changed;
  Variant title;
  Variant fields;
  Variant textFields;
  Variant imageFields;
  Variant fileFields;
};

struct Segment {
  Variant channel;
  Variant archive;
  Variant document;
  Variant version;
  Variant index;
  Variant id;
  Variant name;
  Variant textLength;
  Variant hits;
  Variant contentLength;
  Variant extension;
  Variant type;
  Variant title;
  Variant file;
  Variant status;
  Variant layout;
  Variant thumbnailSize;
  std::string text;
};

struct Document {
  DocumentName name;
  Information information;
  std::vector<Segment> segments;
  std::vector<std::string> notes;
};

Information ReadInformation(clsQuery& query, const DocumentKey& key) {
  Information found;
  Variant status;
  const Variant lines = query.TELOGetDocumentInfo(key.channel, key.archive, key.document, key.version, &found.length,
                                                  &found.created, &found.changed, &found.title, &found.fields,
                                                  &found.textFields, &found.imageFields, &found.fileFields, &status);
  if (Count(lines, status) == 0) throw CommandError("the query server knows nothing about this document");
  if (found.fileFields.IsEmpty()) {
    throw CommandError(
        "the document's information is malformed: "
        "see the log (--log-dir) and ask the query server's operator");
  }
  return found;
}

Segment NextSegment(clsQuery& query, std::int32_t number) {
  Segment next;
  next.text =
      query.TELOGetSegmentsNext(&next.channel, &next.archive, &next.document, &next.version, &next.index, &next.id,
                                &next.name, &next.textLength, &next.hits, &next.contentLength, &next.extension,
                                &next.type, &next.title, &next.file, &next.status, &next.layout, &next.thumbnailSize);
  // What cannot be read leaves the last output unwritten, and the walk stands still.
  if (next.thumbnailSize.IsEmpty()) {
    throw CommandError("segment " + std::to_string(number) +
                       " of the document is malformed: see the log (--log-dir) and ask the query server's operator");
  }
  return next;
}

std::vector<Segment> ReadSegments(clsQuery& query, const DocumentKey& key, const ShowRequest& request, bool color) {
  const bool marksTerminal = color && request.markOn.empty() && request.markOff.empty();
  const std::string on = marksTerminal ? std::string(1, kMarkOn) : FieldFromUtf8(request.markOn);
  const std::string off = marksTerminal ? std::string(1, kMarkOff) : FieldFromUtf8(request.markOff);
  Variant status;
  const Variant result =
      query.TELOGetSegmentsInit(key.channel, key.archive, key.document, key.version, FieldFromUtf8(request.query), on,
                                off, "\n", Missing, Missing, Missing, nullptr, &status);
  const std::int32_t count = Count(result, status);
  std::vector<Segment> segments;
  for (std::int32_t i = 0; i < count; ++i) segments.push_back(NextSegment(query, i + 1));
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

Json JsonSegment(const Segment& segment) {
  return {{"index", JsonFromValue(segment.index)},
          {"id", JsonFromValue(segment.id)},
          {"name", JsonFromValue(segment.name)},
          {"title", JsonFromValue(segment.title)},
          {"type", JsonFromValue(segment.type)},
          {"extension", JsonFromValue(segment.extension)},
          {"file", JsonFromValue(segment.file)},
          {"textLength", JsonFromValue(segment.textLength)},
          {"contentLength", JsonFromValue(segment.contentLength)},
          {"hits", JsonFromValue(segment.hits)},
          {"status", JsonFromValue(segment.status)},
          {"layout", JsonFromValue(segment.layout)},
          {"thumbnailSize", JsonFromValue(segment.thumbnailSize)},
          {"text", ToUtf8(segment.text)}};
}

void PrintJson(const Document& document, std::ostream& out) {
  const Information& information = document.information;
  Json segments = Json::array();
  for (const Segment& segment : document.segments) segments.push_back(JsonSegment(segment));
  const Json json{{"name", ToText(document.name)},
                  {"title", JsonFromValue(information.title)},
                  {"created", JsonFromValue(information.created)},
                  {"changed", JsonFromValue(information.changed)},
                  {"length", JsonFromValue(information.length)},
                  {"fields", JsonFromValue(information.fields)},
                  {"textFields", JsonFromValue(information.textFields)},
                  {"imageFields", JsonFromValue(information.imageFields)},
                  {"fileFields", JsonFromValue(information.fileFields)},
                  {"segments", std::move(segments)},
                  {"notes", JsonNotes(document.notes)}};
  out << json.dump(2) << '\n';
}

void PrintInformation(const Document& document, std::ostream& out) {
  const Information& information = document.information;
  Table table({"Property", "Value"});
  table.Add({"Document", ToText(document.name)});
  table.Add({"Title", Printable(information.title.ToText())});
  table.Add({"Created", Printable(information.created.ToText())});
  table.Add({"Changed", Printable(information.changed.ToText())});
  table.Add({"Length", information.length.ToText()});
  table.Add({"Fields", information.fields.ToText() + " (" + information.textFields.ToText() + " text, " +
                           information.imageFields.ToText() + " image, " + information.fileFields.ToText() + " file)"});
  table.Print(out);
}

void PrintSegments(const std::vector<Segment>& segments, std::ostream& out) {
  Table table({"#", "ID", "Name", "Title", "Type", "Ext", "File", "Text", "Content", "Hits"});
  for (const Segment& segment : segments) {
    table.Add({segment.index.ToText(), segment.id.ToText(), Printable(segment.name.ToText()),
               Printable(segment.title.ToText()), segment.type.ToText(), Printable(segment.extension.ToText()),
               Printable(segment.file.ToText()), segment.textLength.ToText(), segment.contentLength.ToText(),
               segment.hits.ToText()});
  }
  out << '\n';
  table.Print(out);
  for (const Segment& segment : segments) {
    if (segment.text.empty()) continue;
    out << "\n--- Segment " << segment.index.ToText() << ": " << Printable(segment.name.ToText()) << " ---\n"
        << Marked(segment.text) << '\n';
  }
}

}  // namespace

int Show(const Settings& settings, const ShowRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  const auto query = settings.Connect();
  Document document;
  document.name = request.document;
  document.information = ReadInformation(*query, key);
  document.segments = ReadSegments(*query, key, request, output.color && !output.json);
  document.notes = ReadNotes(*query, key);
  // The version that was found where none was asked for.
  if (key.version.empty() && !document.segments.empty()) {
    const std::string version = document.segments.front().version.ToText();
    if (IsPrintable(version)) document.name.version = ToUtf8(version);
  }
  if (output.json) {
    PrintJson(document, output.out);
    return 0;
  }
  PrintInformation(document, output.out);
  PrintSegments(document.segments, output.out);
  PrintNotes(document.notes, output.out);
  return 0;
}

}  // namespace oxaqrycln::oxaqry
