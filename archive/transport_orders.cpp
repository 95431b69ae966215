// Transport orders: queries, their page images, their status.
#include <cstdint>
#include <string>

#include "archive/fetched_file.h"
#include "archive/record_fields.h"
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// The fields of an order's line; further columns follow.
constexpr std::int32_t kOrderField = 1;
constexpr std::int32_t kStatusField = 2;
constexpr std::int32_t kDocumentField = 3;
constexpr std::int32_t kVersionField = 4;

}  // namespace

Variant clsQuery::OstranaQueryFahrauftraegeInit(const Variant& strQuery, const Variant& lngMaxLines,
                                                Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"QueryFahrauftraege", strQuery, lngMaxLines}, strParamStatus)) return;
    result = Variant::Long(state.buffer.Count());
    WriteText(strParamStatus, "");
  });
}

std::string clsQuery::OstranaQueryFahrauftraegeNext(Variant* strStatus, Variant* strDocID, Variant* strVer) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    ResponseBuffer& buffer = state.buffer;
    if (buffer.AtEnd()) return;
    const RecordFields fields(buffer.Line(buffer.position()));
    if (fields.ClosedCount() < kVersionField) throw RuntimeError(error::kSubscriptOutOfRange);
    fields.WriteText(kStatusField, strStatus);
    fields.WriteText(kDocumentField, strDocID);
    fields.WriteText(kVersionField, strVer);
    result = "^" + std::string(fields.Field(kOrderField)) + "^" + std::string(fields.Behind(kVersionField));
    buffer.MoveTo(buffer.position() + 1);
  });
}

Variant clsQuery::OstranaGetFahrauftraegeMultiTIFF(const Variant& strOrderIDs, Variant* strFileName,
                                                   Variant* lngFileLen, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    FetchFile(*this, state, {"GetFahrauftraegeMultiTIFF", strOrderIDs, strBlobPathRemote}, NoFile::kClearsOutputs,
              {strFileName, lngFileLen, strParamStatus}, result);
  });
}

Variant clsQuery::OstranaUpdateFahrauftraegeStatus(const Variant& strOrderID, const Variant& strStatus,
                                                   Variant* strParamStatus) {
  return state_->Send("OstranaUpdateFahrauftraegeStatus", strParamStatus, "UpdateFahrauftraegeStatus", strOrderID,
                      strStatus);
}

}  // namespace oxaqrycln
