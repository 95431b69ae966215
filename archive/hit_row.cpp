#include "archive/hit_row.h"

#include <algorithm>

#include "archive/record_fields.h"
#include "component/query_state.h"
#include "support/text_helpers.h"
#include "values/byte_scan.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::string_view kReferenceStart = "$(#";
constexpr char kReferenceMiddle[] = ")\\";
constexpr std::size_t kReferenceMiddleSize = sizeof kReferenceMiddle - 1;

// The channel and archive of a reference "$(#channel)\archive"; the bytes up to readable may be looked at.
void WriteReference(std::string_view reference, const char* readable, Variant* channel, Variant* archive) {
  const std::size_t middle = FindNear(reference, kReferenceMiddle, readable);
  if (channel != nullptr) {
    if (middle == std::string_view::npos || middle < kReferenceStart.size()) {
      throw RuntimeError(error::kInvalidProcedureCall);
    }
    channel->AssignText(reference.substr(kReferenceStart.size(), middle - kReferenceStart.size()));
  }
  if (archive != nullptr) {
    // Kept: without ")\" the archive is all but the first character.
    const std::size_t start = middle == std::string_view::npos ? 1 : middle + kReferenceMiddleSize;
    if (start > reference.size()) throw RuntimeError(error::kInvalidProcedureCall);
    archive->AssignText(reference.substr(start));
  }
}

void WriteRow(const HitHead& head, bool isTitle, const HitRowOutputs& outputs) {
  WriteText(outputs.documentId, head.documentId);
  WriteText(outputs.version, head.version);
  if (isTitle) {
    WriteText(outputs.channel, "Channel");
    WriteText(outputs.archive, "Archive");
  } else if (outputs.channel != nullptr || outputs.archive != nullptr) {
    const char* const readable = head.rest.data() + head.rest.size();
    WriteReference(head.reference, readable, outputs.channel, outputs.archive);
  }
}

// A row that is not cut plainly: fields are asked for one by one, as far as outputs want them. Kept apart from the
// walk, which is faster without it.
[[gnu::noinline]] std::string ReadOddRow(std::string_view line, bool isTitle, const HitRowOutputs& outputs) {
  const RecordFields fields(line);
  const auto field = [&](bool wanted, std::int32_t number) {
    return wanted ? fields.Field(number) : std::string_view();
  };
  const bool wantsReference = !isTitle && (outputs.channel != nullptr || outputs.archive != nullptr);
  WriteText(outputs.documentId, field(outputs.documentId != nullptr, 2));
  WriteText(outputs.version, field(outputs.version != nullptr, 3));
  const std::string_view reference = field(wantsReference, 1);
  const HitHead head{reference, {}, {}, reference.substr(reference.size())};
  WriteRow(head, isTitle, {outputs.channel, outputs.archive, nullptr, nullptr});
  const auto third = static_cast<std::size_t>(InStrExt(std::string(line) + ",^", "^,^", 3));
  return std::string(line.substr(std::min(line.size(), third + 1)));
}

}  // namespace

std::string ReadHitRow(std::string_view line, bool isTitle, const HitRowOutputs& outputs) {
  HitHead head;
  if (!SplitHitHead(line, head)) return ReadOddRow(line, isTitle, outputs);
  WriteRow(head, isTitle, outputs);
  return std::string(head.rest);
}

}  // namespace oxaqrycln
