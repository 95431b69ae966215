#include "tools/devserver/commands/document_commands.h"

#include <algorithm>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/archive/hit_marks.h"
#include "tools/devserver/protocol/answer_text.h"

namespace oxaqrycln::devserver {
namespace {

// No segment has a status, a thumbnail or more than one layout here.
constexpr const char* kStatus = "0";
constexpr const char* kLayoutId = "1";
constexpr const char* kThumbnailSize = "0";

std::int64_t CountOf(const std::vector<Segment>& segments, SegmentType type) {
  return std::count_if(segments.begin(), segments.end(), [&](const Segment& segment) { return segment.type == type; });
}

std::string NoteCountLine(const Call& call, const Document& document) {
  return std::to_string(NoteCount(call.database, document)) + "\r\n";
}

}  // namespace

Reply GetDocumentInfo(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  const std::vector<Segment> segments = ReadSegments(call.database, document.id, document.version);
  std::int64_t byteCount = 0;
  for (const Segment& segment : segments) byteCount += segment.byteCount + std::ssize(segment.text);
  return Record({call.parameters[0], call.parameters[1], std::to_string(document.id), std::to_string(document.version),
                 std::to_string(byteCount), document.created, document.changed, document.title,
                 std::to_string(segments.size()), std::to_string(CountOf(segments, SegmentType::kText)),
                 std::to_string(CountOf(segments, SegmentType::kImage)),
                 std::to_string(CountOf(segments, SegmentType::kFile))}) +
         "\r\n";
}

Reply GetSegmentDescription(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  call.blobs.Require(call.parameters[4]);
  std::string lines = NoteCountLine(call, document);
  for (const Segment& segment : ReadSegments(call.database, document.id, document.version)) {
    lines += Record({std::to_string(segment.fieldId), segment.Name(), std::to_string(segment.text.size()), "0",
                     std::to_string(segment.byteCount), segment.Extension(),
                     std::to_string(static_cast<std::int64_t>(segment.type)), segment.Title(), segment.fileName,
                     kStatus, kLayoutId, kThumbnailSize}) +
             "\r\n";
  }
  return lines;
}

Reply GetSegmentText(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  std::vector<Segment> segments = ReadSegments(call.database, document.id, document.version);
  std::erase_if(segments, [](const Segment& segment) { return segment.type != SegmentType::kText; });
  const Parameters& parameters = call.parameters;
  const auto texts = MarkHits(call.database, segments, parameters[4], {parameters[5], parameters[6], parameters[7]});
  std::string lines;
  for (const MarkedText& text : texts) lines += "^" + WithLineEnds(text.text) + "^\r\n";
  return lines;
}

Reply GetSegments(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  const Parameters& parameters = call.parameters;
  call.blobs.Require(parameters[8]);
  const std::vector<Segment> segments = ReadSegments(call.database, document.id, document.version);
  const auto texts = MarkHits(call.database, segments, parameters[4], {parameters[5], parameters[6], parameters[7]});
  std::string lines = NoteCountLine(call, document);
  for (std::size_t index = 0; index < segments.size(); ++index) {
    const Segment& segment = segments[index];
    const std::string position = std::to_string(segment.position);
    lines += Record({parameters[0], parameters[1], std::to_string(document.id), std::to_string(document.version),
                     position, std::to_string(segment.fieldId), segment.Name(), std::to_string(segment.text.size()),
                     std::to_string(texts[index].hitCount), std::to_string(segment.byteCount), segment.Extension(),
                     std::to_string(static_cast<std::int64_t>(segment.type)), segment.Title(), segment.fileName,
                     kStatus, kLayoutId, kThumbnailSize}) +
             ",^" + WithLineEnds(texts[index].text) + "^\r\n";
  }
  return lines;
}

}  // namespace oxaqrycln::devserver
