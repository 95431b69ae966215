// The information on a document, and its segments with their descriptions and texts.
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "archive/record_fields.h"
#include "archive/text_items.h"
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

bool IsTrue(const Variant& value) { return value.type() == Variant::Type::Boolean && value.ToBoolean(); }

}  // namespace

Variant clsQuery::TELOGetDocumentInfo(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                      const Variant& strVer, Variant* lngLaenge, Variant* strErstelldat,
                                      Variant* strAenderDat, Variant* strTitel, Variant* intFelderGes,
                                      Variant* intTextFelder, Variant* intBildFelder, Variant* intBlobFelder,
                                      Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"GetDocumentInfo", strChannel, strArchive, strDocID, strVer}, strParamStatus)) return;
    result = Variant::Long(state.buffer.Count());
    if (state.buffer.Count() > 0) {
      const RecordFields fields(state.buffer.Line(0));
      fields.WriteLong(5, lngLaenge);
      fields.WriteText(6, strErstelldat);
      fields.WriteText(7, strAenderDat);
      fields.WriteText(8, strTitel);
      fields.WriteInteger(9, intFelderGes);
      fields.WriteInteger(10, intTextFelder);
      fields.WriteInteger(11, intBildFelder);
      fields.WriteInteger(12, intBlobFelder);
    }
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELOGetSegmentDescriptionInit(const Variant& strChannel, const Variant& strArchive,
                                                const Variant& strDocID, const Variant& strVer,
                                                const Variant& strParamThumbnailPath, Variant* lngNotes,
                                                Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load(
            {"GetSegmentDescription", strChannel, strArchive, strDocID, strVer, OrText(strParamThumbnailPath, "")},
            strParamStatus)) {
      return;
    }
    if (lngNotes != nullptr) lngNotes->AssignText(state.buffer.Line(0));
    result = Variant::Long(state.buffer.Count() - 1);
    state.buffer.MoveTo(1);
    WriteText(strParamStatus, "");
  });
}

std::string clsQuery::TELOGetSegmentDescriptionNext(Variant* intFeldID, Variant* lngTextLaenge, Variant* intTrefferZahl,
                                                    Variant* lngNCILaenge, Variant* strExt, Variant* intFeldTyp,
                                                    Variant* strFeldtitel, Variant* strDateiname, Variant* intStatus,
                                                    Variant* strLayoutID, Variant* lngThumbnailSize) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    if (state.buffer.AtEnd()) return;
    const RecordFields fields(state.buffer.Line(state.buffer.position()));
    const std::string_view name = fields.Field(2);
    fields.WriteText(1, intFeldID);
    // Kept: every output is text, whatever its name says; TELOGetSegmentsNext converts the same fields.
    std::int32_t number = 3;
    for (Variant* output : {lngTextLaenge, intTrefferZahl, lngNCILaenge, strExt, intFeldTyp, strFeldtitel, strDateiname,
                            intStatus, strLayoutID, lngThumbnailSize}) {
      fields.WriteText(number++, output);
    }
    result = name;
    state.buffer.MoveTo(state.buffer.position() + 1);
  });
}

Variant clsQuery::TELOGetSegmentTextInit(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                         const Variant& strVer, const Variant& strQuery, const Variant& strMarkOn,
                                         const Variant& strMarkOff, const Variant& strCRLF, const Variant& strBlank,
                                         Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"GetSegmentText", strChannel, strArchive, strDocID, strVer, OrText(strQuery, ""),
                     OrText(strMarkOn, ""), OrText(strMarkOff, ""), OrText(strBlank, "")},
                    strParamStatus)) {
      return;
    }
    const Variant lineBreak = OrText(strCRLF, kLineEnd);
    std::string scratch;
    result = Variant::Long(state.texts.Assign(SegmentTexts(state.buffer, lineBreak.TextView(scratch))));
    WriteText(strParamStatus, "");
  });
}

std::string clsQuery::TELOGetSegmentTextNext() {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) { result = state.texts.Next(); });
}

Variant clsQuery::TELOGetSegmentsInit(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                      const Variant& strVer, const Variant& strQuery, const Variant& strMarkOn,
                                      const Variant& strMarkOff, const Variant& strParamCRLF, const Variant& strBlank,
                                      const Variant& strThumbnailPath, const Variant& blnIncludeERF, Variant* lngNotes,
                                      Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    state.segmentLineBreak = OrText(strParamCRLF, kLineEnd).ToText();
    if (!state.Load({"GetSegments", strChannel, strArchive, strDocID, strVer, OrText(strQuery, ""),
                     OrText(strMarkOn, ""), OrText(strMarkOff, ""), OrText(strBlank, ""), OrText(strThumbnailPath, ""),
                     IsTrue(blnIncludeERF) ? "1" : "0"},
                    strParamStatus)) {
      return;
    }
    ResponseBuffer& buffer = state.buffer;
    if (lngNotes != nullptr) *lngNotes = TextToLong(buffer.Line(0));
    std::int32_t segments = 0;
    for (std::int32_t i = 1; i < buffer.Count(); ++i) segments += StartsRecord(buffer.Line(i)) ? 1 : 0;
    result = Variant::Long(segments);
    buffer.MoveTo(1);
    WriteText(strParamStatus, "");
  });
}

std::string clsQuery::TELOGetSegmentsNext(Variant* strChannel, Variant* strArchive, Variant* strDocID, Variant* strVer,
                                          Variant* intFeldIndex, Variant* intFeldID, Variant* strFeldName,
                                          Variant* lngTextLaenge, Variant* intTrefferZahl, Variant* lngNCILaenge,
                                          Variant* strExt, Variant* intFeldTyp, Variant* strFeldtitel,
                                          Variant* strDateiname, Variant* intStatus, Variant* strLayoutID,
                                          Variant* lngThumbnailSize) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    ResponseBuffer& buffer = state.buffer;
    if (buffer.AtEnd()) return;
    std::int32_t position = buffer.position();
    std::string line(buffer.Line(position++));
    // A text that continues in the following lines has no closing caret here.
    const bool isWhole = position < buffer.Count() && StartsRecord(buffer.Line(position));
    if (!isWhole) line += '^';
    const RecordFields fields(line);
    fields.WriteText(1, strChannel);
    fields.WriteText(2, strArchive);
    fields.WriteText(3, strDocID);
    fields.WriteText(4, strVer);
    fields.WriteInteger(5, intFeldIndex);
    fields.WriteInteger(6, intFeldID);
    fields.WriteText(7, strFeldName);
    fields.WriteLong(8, lngTextLaenge);
    fields.WriteInteger(9, intTrefferZahl);
    fields.WriteLong(10, lngNCILaenge);
    fields.WriteText(11, strExt);
    fields.WriteInteger(12, intFeldTyp);
    fields.WriteText(13, strFeldtitel);
    fields.WriteText(14, strDateiname);
    fields.WriteInteger(15, intStatus);
    fields.WriteText(16, strLayoutID);
    fields.WriteLong(17, lngThumbnailSize);
    std::string text(fields.Field(18));
    for (; position < buffer.Count() && !StartsRecord(buffer.Line(position)); ++position) {
      text.append(state.segmentLineBreak).append(buffer.Line(position));
    }
    if (text.ends_with('^')) text.pop_back();
    result = std::move(text);
    buffer.MoveTo(position);
  });
}

}  // namespace oxaqrycln
