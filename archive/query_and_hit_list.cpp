// Queries, and the walk through their hit lists.
#include <cstdint>
#include <string>
#include <string_view>

#include "archive/hit_row.h"
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

// The lines of the answer to a query.
constexpr std::int32_t kTotalLine = 0;
constexpr std::int32_t kLayoutLine = 1;
constexpr std::int32_t kMultiTiffLine = 2;
constexpr std::int32_t kStoreLine = 3;  // the first line of the hit list store
constexpr std::int32_t kTitleLine = 4;

// "key=value;key=value" as the keys and the values, each joined by ",".
void SplitLayout(std::string_view layout, Variant& keys, Variant& values) {
  std::string keyList;
  std::string valueList;
  bool isWhole = true;
  for (const std::string_view entry : Split(layout, ';')) {
    if (entry.data() != layout.data()) {
      keyList += ',';
      valueList += ',';
    }
    const TextCut cut = Cut(entry, '=');
    isWhole = cut.hasSeparator;
    if (!isWhole) break;
    keyList += cut.before;
    valueList += cut.after;
  }
  keys.AssignText(keyList);
  values.AssignText(valueList);
  if (!isWhole) throw RuntimeError(error::kInvalidProcedureCall);
}

}  // namespace

Variant clsQuery::TELOQueryArchiveInit(const Variant& strQuery, const Variant& lngMaxLines, const Variant& lngQueryMax,
                                       const Variant& strQueryFormat, const Variant& strFolderRights,
                                       const Variant& strLayoutFieldID, const Variant& strLayoutID,
                                       Variant* strLayoutKeys, Variant* strLayoutValues, Variant* lngTotalHits,
                                       Variant* blnHitlistMultiTIFF, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
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
    state.hits = HitListStore(buffer, kStoreLine);
    state.buffer.MoveTo(kTitleLine);
    WriteText(strParamStatus, "");
  });
}

std::string clsQuery::TELOQueryArchiveNext(Variant* strChannel, Variant* strArchive, Variant* strDocID,
                                           Variant* strVer) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    ResponseBuffer& buffer = state.buffer;
    if (buffer.AtEnd()) return;
    ReadHitRow(buffer.Line(buffer.position()), buffer.position() <= kTitleLine,
               {strChannel, strArchive, strDocID, strVer}, result);
    buffer.MoveTo(buffer.position() + 1);
  });
}

}  // namespace oxaqrycln
