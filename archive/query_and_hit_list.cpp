// Queries, and the walk through their hit lists.
#include <algorithm>

#include "archive/record_fields.h"
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "component/text_helpers.h"
#include "platform/byte_scan.h"
#include "platform/errors.h"

namespace oxaqrycln {
namespace {

// Where things stand in the answer to a query.
constexpr std::int32_t kTotalLine = 0;
constexpr std::int32_t kLayoutLine = 1;
constexpr std::int32_t kMultiTiffLine = 2;
constexpr std::int32_t kStoreLine = 3;  // the first line of the hit list store
constexpr std::int32_t kTitleLine = 4;

constexpr std::string_view kReferenceStart = "$(#";
constexpr char kReferenceMiddle[] = ")\\";
constexpr std::size_t kReferenceMiddleSize = sizeof kReferenceMiddle - 1;

// "key=value;key=value" as the keys and the values, each joined by ",".
void SplitLayout(std::string_view layout, Variant& keys, Variant& values) {
  std::string keyList;
  std::string valueList;
  for (bool more = !layout.empty(), first = true; more; first = false) {
    const std::size_t end = layout.find(';');
    const std::string_view entry = layout.substr(0, end);
    more = end != std::string_view::npos;
    if (more) layout.remove_prefix(end + 1);
    const std::size_t equals = entry.find('=');
    if (!first) {
      keyList += ',';
      valueList += ',';
    }
    if (equals == std::string_view::npos) {
      keys.AssignText(keyList);
      values.AssignText(valueList);
      throw RuntimeError(error::kInvalidProcedureCall);
    }
    keyList += entry.substr(0, equals);
    valueList += entry.substr(equals + 1);
  }
  keys.AssignText(keyList);
  values.AssignText(valueList);
}

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

struct RowOutputs {
  Variant* channel;
  Variant* archive;
  Variant* documentId;
  Variant* version;
};

void WriteRow(const HitHead& head, bool isTitle, const RowOutputs& outputs) {
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
[[gnu::noinline]] std::string ReadOddRow(std::string_view line, bool isTitle, const RowOutputs& outputs) {
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

Variant clsQuery::TELOQueryArchiveInit(const Variant& strQuery, const Variant& lngMaxLines, const Variant& lngQueryMax,
                                       const Variant& strQueryFormat, const Variant& strFolderRights,
                                       const Variant& strLayoutFieldID, const Variant& strLayoutID,
                                       Variant* strLayoutKeys, Variant* strLayoutValues, Variant* lngTotalHits,
                                       Variant* blnHitlistMultiTIFF, Variant* strParamStatus) {
  QueryState& state = *state_;
  return state.Run("TELOQueryArchiveInit", Failed(), [&](Variant& result) {
    const ResponseBuffer& buffer = state.buffer;
    // Kept: the order on the wire is not that of the parameters.
    if (!state.Load({"QueryArchive", strQuery, lngMaxLines, lngQueryMax, OrText(strLayoutFieldID, ""), strQueryFormat,
                     strFolderRights, OrText(strLayoutID, "")},
                    strParamStatus)) {
      return;
    }
    result = Variant::Long(buffer.Count() - kTitleLine);
    if (lngTotalHits != nullptr) lngTotalHits->AssignText(buffer.Line(kTotalLine));
    if (strLayoutKeys != nullptr && strLayoutValues != nullptr) {
      strLayoutKeys->AssignText("");
      strLayoutValues->AssignText("");
      SplitLayout(buffer.Line(kLayoutLine), *strLayoutKeys, *strLayoutValues);
    }
    if (blnHitlistMultiTIFF != nullptr) *blnHitlistMultiTIFF = buffer.Line(kMultiTiffLine) == "1";
    if (buffer.Count() < kTitleLine) return;
    state.hits = {.lines = buffer.Share(),
                  .firstLine = kStoreLine,
                  .upperIndex = buffer.Count() - kTitleLine,
                  .lastSortDirection = "",
                  .lastSortColumn = 0};
    state.buffer.MoveTo(kTitleLine);
    WriteText(strParamStatus, "");
  });
}

std::string clsQuery::TELOQueryArchiveNext(Variant* strChannel, Variant* strArchive, Variant* strDocID,
                                           Variant* strVer) {
  QueryState& state = *state_;
  return state.Run("TELOQueryArchiveNext", std::string(), [&](std::string& result) {
    ResponseBuffer& buffer = state.buffer;
    if (buffer.AtEnd()) return;
    const std::string_view line = buffer.Line(buffer.position());
    const bool isTitle = buffer.position() <= kTitleLine;
    const RowOutputs outputs{strChannel, strArchive, strDocID, strVer};
    if (HitHead head; SplitHitHead(line, head)) {
      WriteRow(head, isTitle, outputs);
      result = std::string(head.rest);
    } else {
      result = ReadOddRow(line, isTitle, outputs);
    }
    buffer.MoveTo(buffer.position() + 1);
  });
}

}  // namespace oxaqrycln
