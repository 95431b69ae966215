#include "tools/devserver/commands/handlers.h"

#include <limits>

#include "tools/devserver/archive/documents.h"
#include "tools/devserver/archive/page_source.h"
#include "tools/devserver/content/page_image.h"
#include "tools/devserver/protocol/answer_text.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::devserver {
namespace {

ServerError Missing(const Document& document, const std::string& what) {
  return ServerError("Document " + std::to_string(document.id) + " has no " + what);
}

constexpr std::int64_t kLargestUpload = std::numeric_limits<std::int32_t>::max();

std::string FileName(const Document& document, const std::string& part, const std::string& extension) {
  std::string name = std::to_string(document.id) + "_" + std::to_string(document.version) + "_" + part;
  return extension.empty() ? name : name + "." + extension;
}

Reply StoreSegment(const Call& call, const Document& document, const Segment& segment) {
  const std::string name = FileName(document, std::to_string(segment.position), segment.Extension());
  if (segment.contentId) {
    const std::string stored = call.blobs.Store(name, [&](ReplacementFile& file) {
      CopyContent(call.database, *segment.contentId, [&](std::string_view piece) { file.Write(piece); });
    });
    return std::to_string(segment.byteCount) + "\r\n" + stored + "\r\n";
  }
  const bool isImage = segment.type == SegmentType::kImage;
  return StoreContent(call, name,
                      isImage ? SamplePageTiff(document.id, segment.firstPage) : WithLineEnds(segment.text));
}

std::vector<std::int64_t> ParsePages(const std::string& list, const Document& document, std::int64_t pageCount) {
  std::vector<std::int64_t> pages;
  if (list.empty()) {
    for (std::int64_t page = 1; page <= pageCount; ++page) pages.push_back(page);
  }
  for (const std::string_view item : Split(list, ',')) {
    const std::int64_t page = ParseNumber(item).value_or(0);
    if (page < 1 || page > pageCount) {
      throw Missing(document, "page '" + Printable(item) + "' (number of pages: " + std::to_string(pageCount) + ")");
    }
    pages.push_back(page);
  }
  if (pages.empty()) throw Missing(document, "pages");
  return pages;
}

std::string PrintedSegment(const Segment& segment) {
  std::string lines = segment.Title() + ":";
  if (segment.type != SegmentType::kText) {
    return lines + " " + segment.fileName + ", " + std::to_string(segment.byteCount) + " bytes\n";
  }
  return lines + (segment.text.find('\n') == std::string::npos ? " " : "\n") + segment.text + "\n";
}

}  // namespace

Reply GetSegmentData(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  call.blobs.Require(call.parameters[5]);
  const auto position = ParseNumber(call.parameters[4]);
  for (const Segment& segment : ReadSegments(call.database, document.id, document.version)) {
    if (segment.position == position) return StoreSegment(call, document, segment);
  }
  throw Missing(document, "segment '" + Printable(call.parameters[4]) + "'");
}

Reply GetSegmentFirstBlob(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  call.blobs.Require(call.parameters[5]);
  std::string_view extension = call.parameters[4];
  if (extension.starts_with('.')) extension.remove_prefix(1);
  for (const Segment& segment : ReadSegments(call.database, document.id, document.version)) {
    if (segment.type != SegmentType::kFile) continue;
    if (extension.empty() || UpperCase(extension) == UpperCase(segment.Extension())) {
      return StoreSegment(call, document, segment);
    }
  }
  throw Missing(document,
                "stored file" + (extension.empty() ? "" : " with the extension '" + Printable(extension) + "'"));
}

Reply GetSegmentPrintfile2(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  call.blobs.Require(call.parameters[5]);
  const std::string& wanted = call.parameters[4];
  const auto fieldId = ParseNumber(wanted);
  std::string lines = "Document " + std::to_string(document.id) + ", version " + std::to_string(document.version) +
                      ", " + document.archive.reference + "\nTitle: " + document.title + "\n";
  bool found = wanted.empty();
  for (const Segment& segment : ReadSegments(call.database, document.id, document.version)) {
    if (!wanted.empty() && segment.fieldId != fieldId) continue;
    found = true;
    lines += PrintedSegment(segment);
  }
  if (!found) throw Missing(document, "field '" + Printable(wanted) + "'");
  const std::string part = "print" + (fieldId ? std::to_string(*fieldId) : "");
  return StoreContent(call, FileName(document, part, "txt"), WithLineEnds(lines));
}

Reply GetSegmentMultiTif(const Call& call) {
  const Document document = FindDocument(call.database, call.parameters);
  call.blobs.Require(call.parameters[5]);
  PageSource source(call.database, document.id, document.version);
  const auto pages = ParsePages(call.parameters[4], document, source.pageCount());
  TiffWriter writer;
  for (const std::int64_t page : pages) writer.Add(source.Read(page));
  return StoreContent(call, FileName(document, "pages", "tif"), writer.Finish());
}

Reply StoreContent(const Call& call, const std::string& name, std::string_view bytes) {
  return std::to_string(bytes.size()) + "\r\n" + call.blobs.Store(name, bytes) + "\r\n";
}

Reply TransferBlob(const Call& call) {
  Reply reply{std::string()};
  reply.isRaw = true;
  reply.file = call.blobs.Open(call.parameters[0]);
  return reply;
}

Reply UploadFile(const Call& call) {
  call.blobs.Require(call.parameters[0]);
  const auto byteCount = ParseNumber(call.parameters[2]);
  if (!byteCount || *byteCount > kLargestUpload) {
    throw ServerError("'" + Printable(call.parameters[2]) + "' is not a byte count from 0 to " +
                      std::to_string(kLargestUpload));
  }
  Reply reply{std::string()};
  reply.upload = std::make_unique<Upload>(call.blobs.Replace(call.parameters[1]), call.parameters[1],
                                          static_cast<std::size_t>(*byteCount));
  return reply;
}

}  // namespace oxaqrycln::devserver
