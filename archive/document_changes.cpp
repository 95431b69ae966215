// Creates, edits and deletes documents: the import file, and the requests that refer to it.
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "platform/files/files.h"
#include "support/text_helpers.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

// "FT:title,type:identifier,type:identifier": a pair for each position at which both lists have an element.
std::string FolderLine(std::string_view title, std::string_view types, std::string_view identifiers) {
  std::string line = "@FOLDER,FT:" + std::string(title);
  const auto typeList = Split(types, ',');
  const auto identifierList = Split(identifiers, ',');
  for (std::size_t i = 0; i < typeList.size() && i < identifierList.size(); ++i) {
    line.append(",").append(typeList[i]).append(":").append(identifierList[i]);
  }
  return line;
}

}  // namespace

Variant clsQuery::TELODeleteDocument(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                     const Variant& strVer, Variant* strParamStatus) {
  return state_->Send("TELODeleteDocument", strParamStatus, "DeleteDocument", strChannel, strArchive, strDocID, strVer);
}

Variant clsQuery::CreateImportFile(const Variant& strImportFile, const Variant& strChannel, const Variant& strArchive,
                                   const Variant& strTitle, const Variant& strParamFieldTypes,
                                   const Variant& strParamFieldIDs, const Variant& strFieldContents,
                                   const Variant& strCharSet, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    const std::string file = strImportFile.ToText();
    state.log.Write(bytInfo, "Creating import file '", file, "'");
    std::string text;
    if (!strCharSet.IsMissing()) text.append("@CHARSET,").append(strCharSet.ToText()).append(kLineEnd);
    text.append("@DB,$(#").append(strChannel.ToText()).append(")\\").append(strArchive.ToText()).append(kLineEnd);
    text.append(FolderLine(strTitle.ToText(), strParamFieldTypes.ToText(), strParamFieldIDs.ToText())).append(kLineEnd);
    text.append(strFieldContents.ToText()).append(kLineEnd);
    // Kept: an older file is continued; a page that wants a new one deletes it first.
    AppendWhole(file, text);
    result = Variant::Long(1);
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELOCreateDocument(const Variant& strImportFile, Variant* strDocIDVer, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"CreateDocument", strImportFile}, strParamStatus)) return;
    if (strDocIDVer != nullptr) strDocIDVer->AssignText(state.buffer.Line(0));
    result = Variant::Long(state.buffer.Count());
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELOEditDocument(const Variant& strImportFile, Variant& strDocIDVer, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"EditDocument", strImportFile, strDocIDVer}, strParamStatus)) return;
    strDocIDVer.AssignText(state.buffer.Line(0));
    result = Variant::Long(state.buffer.Count());
    WriteText(strParamStatus, "");
  });
}

}  // namespace oxaqrycln
