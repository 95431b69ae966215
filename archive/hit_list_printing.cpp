// The hit list as a file to print.
#include <cstdint>
#include <string>

#include "archive/fetched_file.h"
#include "component/clsQuery.h"
#include "component/query_state.h"

namespace oxaqrycln {
namespace {

// The rows of the store from the title row on, with CR LF between them. Raises Subscript out of range without a title
// row.
std::string Rows(const HitListStore& hits) {
  std::string rows(hits.Line(HitListStore::kTitleRow));
  for (std::int32_t row = HitListStore::kFirstHit; row <= hits.UpperIndex(); ++row) {
    rows.append("\r\n").append(hits.Line(row));
  }
  return rows;
}

}  // namespace

Variant clsQuery::FennikPrintHitlistPDF(const Variant& strTitle, Variant* strFileName, Variant* lngFileLen,
                                        Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    FetchFile(*this, state, {"PrintHitlistPDF", strTitle, Rows(state.hits), strBlobPathRemote}, NoFile::kLeavesOutputs,
              {strFileName, lngFileLen, strParamStatus}, result);
  });
}

}  // namespace oxaqrycln
