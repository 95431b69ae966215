#include "tools/devserver/commands/handlers.h"

#include <algorithm>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/archive/hit_marks.h"
#include "tools/devserver/protocol/answer_text.h"

namespace oxaqrycln::devserver {
namespace {

std::string CountOf(const std::vector<Segment>& segments, SegmentType type) {
  return std::to_string(std::ranges::count(segments, type, &Segment::type));
}

std::string NoteCountLine(const Call& call, const Document& document) {
  return std::to_string(NoteCount(call.database, document)) + "\r\n";
}

std::string Describe(const Segment& segment, std::int64_t hitCount) {
  // No segment has a status, a second layout or a thumbnail.
  return Record({std::to_string(segment.fieldId), segment.Name(), std::to_string(segment.text.size()),
                 std::to_string(hitCount), std::to_string(segment.byteCount), segment.Extension(),
                 std::to_string(static_cast<std::int64_t>(segment.type)), segment.Title(), segment.fileName, "0", "1",
                 "0"});
}

// The texts of the segments with the hits of the query marked; query and marks are the parameters from the fifth on.
std::vector<MarkedText> MarkedTexts(const Call& call, const std::vector<Segment>& segments) {
  return MarkHits(call.database, segments, call.parameters[4],
                  {call.parameters[5], call.parameters[6], call.parameters[7]});
}

}  // namespace

Reply GetDocumentInfo(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  const std::vector<Segment> segments = ReadSegments(call.database, document.id, document.version);
  std::int64_t byteCount = 0;
  for (const Segment& segment : segments) byteCount += segment.byteCount + std::ssize(segment.text);
  return Record({call.parameters[0], call.parameters[1], std::to_string(document.id), std::to_string(document.version),
                 std::to_string(byteCount), document.created, document.changed, document.title,
                 std::to_string(segments.size()), CountOf(segments, SegmentType::kText),
                 CountOf(segments, SegmentType::kImage), CountOf(segments, SegmentType::kFile)}) +
         "\r\n";
}

Reply GetSegmentDescription(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  call.blobs.Require(call.parameters[4]);
  std::string lines = NoteCountLine(call, document);
  for (const Segment& segment : ReadSegments(call.database, document.id, document.version)) {
    lines += Describe(segment, 0) + "\r\n";
  }
  return lines;
}

Reply GetSegmentText(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  std::vector<Segment> segments = ReadSegments(call.database, document.id, document.version);
  std::erase_if(segments, [](const Segment& segment) { return segment.type != SegmentType::kText; });
  std::string lines;
  for (const MarkedText& text : MarkedTexts(call, segments)) lines += "^" + WithLineEnds(text.text) + "^\r\n";
  return lines;
}

Reply GetSegments(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  call.blobs.Require(call.parameters[8]);
  const std::vector<Segment> segments = ReadSegments(call.database, document.id, document.version);
  const std::vector<MarkedText> texts = MarkedTexts(call, segments);
  std::string lines = NoteCountLine(call, document);
  for (std::size_t index = 0; index < segments.size(); ++index) {
    lines += Record({call.parameters[0], call.parameters[1], std::to_string(document.id),
                     std::to_string(document.version), std::to_string(segments[index].position)}) +
             "," + Describe(segments[index], texts[index].hitCount) + ",^" + WithLineEnds(texts[index].text) + "^\r\n";
  }
  return lines;
}

}  // namespace oxaqrycln::devserver
