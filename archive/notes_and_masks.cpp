// The notes of a document, and the masks of an archive with their fields.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "archive/record_fields.h"
#include "archive/text_items.h"
#include "component/clsQuery.h"
#include "component/query_state.h"

namespace oxaqrycln {
namespace {

constexpr std::size_t kLongestNote = 8000;  // characters

bool NamesMask(std::string_view line) noexcept { return line.starts_with('@'); }

// How many lines there are from the read position to the next mask. Counted once for each mask.
std::int32_t FieldsLeft(QueryState& state) {
  const ResponseBuffer& buffer = state.buffer;
  const std::int32_t position = buffer.position();
  if (!state.maskFields.Holds(buffer, position)) {
    std::int32_t end = position;
    while (end < buffer.Count() && !NamesMask(buffer.Line(end))) ++end;
    state.maskFields = {buffer.revision(), position, end};
  }
  return state.maskFields.end - position;
}

}  // namespace

Variant clsQuery::TELOGetNotesInit(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                   const Variant& strVer, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"GetNotes", strChannel, strArchive, strDocID, strVer}, strParamStatus)) return;
    result = Variant::Long(state.texts.Assign(Notes(state.buffer)));
    WriteText(strParamStatus, "");
  });
}

std::string clsQuery::TELOGetNotesNext() {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) { result = state.texts.Next(); });
}

Variant clsQuery::TELOWriteNote(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                const Variant& strVer, const Variant& strNote, const Variant& strParamCRLF,
                                Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    const std::string note = strNote.ToText().substr(0, kLongestNote);
    if (!state.Load({"WriteNote", strChannel, strArchive, strDocID, strVer, note, OrText(strParamCRLF, "\r\n")},
                    strParamStatus)) {
      return;
    }
    result = Variant::Long(1);
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELODeleteNotes(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                  const Variant& strVer, Variant* strParamStatus) {
  return state_->Send("TELODeleteNotes", strParamStatus, "DeleteNotes", strChannel, strArchive, strDocID, strVer);
}

Variant clsQuery::TELOGetMasksInit(const Variant& strChannel, const Variant& strArchive, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"GetMasks", strChannel, strArchive}, strParamStatus)) return;
    std::int32_t masks = 0;
    for (std::int32_t i = 0; i < state.buffer.Count(); ++i) masks += NamesMask(state.buffer.Line(i)) ? 1 : 0;
    result = Variant::Long(masks);
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELOGetMasksNext(Variant* strMaskName) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    ResponseBuffer& buffer = state.buffer;
    WriteText(strMaskName, "");
    buffer.MoveTo(buffer.position() + FieldsLeft(state));
    if (buffer.AtEnd()) return;
    WriteText(strMaskName, buffer.Take().substr(1));
    result = Variant::Long(FieldsLeft(state));
  });
}

Variant clsQuery::TELOGetMasksNextField(Variant* lngTabIndex, Variant* lngWidth, Variant* strAlign, Variant* strName,
                                        Variant* blnMandatory, Variant* strInitText, Variant* blnListOnly,
                                        Variant* strList) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    ResponseBuffer& buffer = state.buffer;
    if (buffer.AtEnd() || NamesMask(buffer.Line(buffer.position()))) return;
    const RecordFields fields(buffer.Line(buffer.position()));
    std::int32_t number = 1;
    for (Variant* output :
         {lngTabIndex, lngWidth, strAlign, strName, blnMandatory, strInitText, blnListOnly, strList}) {
      fields.WriteText(number++, output);
    }
    buffer.MoveTo(buffer.position() + 1);
    result = Variant::Long(FieldsLeft(state));
  });
}

void clsQuery::TELOGetMasksFirst() { state_->buffer.MoveTo(0); }

}  // namespace oxaqrycln
