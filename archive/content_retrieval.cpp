// Retrieves the stored content of documents into the local blob directory: through the query server or the connection.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "archive/fetched_file.h"
#include "archive/stored_name.h"
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "support/text_helpers.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// A file of OpenFiles that is discarded unless it is kept.
class FileBeingReceived {
 public:
  FileBeingReceived(OpenFiles& files, std::string_view path) : files_(files), number_(files.OpenForWriting(path)) {}
  ~FileBeingReceived() { files_.Discard(number_); }
  FileBeingReceived(const FileBeingReceived&) = delete;
  FileBeingReceived& operator=(const FileBeingReceived&) = delete;
  std::uint8_t number() const noexcept { return number_; }
  void Keep() { files_.Close(number_); }

 private:
  OpenFiles& files_;
  const std::uint8_t number_;
};

}  // namespace

Variant clsQuery::TELOGetSegmentData(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                     const Variant& strVer, const Variant& intFieldIndex, Variant* strFileName,
                                     Variant* lngFileLen, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    FetchFile(*this, state,
              {"GetSegmentData", strChannel, strArchive, strDocID, strVer, intFieldIndex, strBlobPathRemote},
              NoFile::kLeavesOutputs, {strFileName, lngFileLen, strParamStatus}, result);
  });
}

Variant clsQuery::TELOGetSegmentFirstBLOB(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                          const Variant& strVer, const Variant& strParamFileExt, Variant* strFileName,
                                          Variant* lngFileLen, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    FetchFile(*this, state,
              {"GetSegmentFirstBLOB", strChannel, strArchive, strDocID, strVer, OrText(strParamFileExt, ""),
               strBlobPathRemote},
              NoFile::kLeavesOutputs, {strFileName, lngFileLen, strParamStatus}, result);
  });
}

Variant clsQuery::TELOGetSegmentPrintfile(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                          const Variant& strVer, const Variant& strFieldID, Variant* strFileName,
                                          Variant* lngFileLen, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    // Kept: the command word is not the method's name.
    FetchFile(*this, state,
              {"GetSegmentPrintfile2", strChannel, strArchive, strDocID, strVer, strFieldID, strBlobPathRemote},
              NoFile::kLeavesOutputs, {strFileName, lngFileLen, strParamStatus}, result);
  });
}

Variant clsQuery::TELOGetSegmentMultiTIF(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                         const Variant& strVer, const Variant& strPages, Variant* strFileName,
                                         Variant* lngFileLen, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    const auto pages = Trap(state.log, "GetPages", std::optional<std::string>(),
                            [&](std::optional<std::string>& list) { list = GetPages(strPages.ToText()); });
    if (!pages) return;
    FetchFile(*this, state, {"GetSegmentMultiTIF", strChannel, strArchive, strDocID, strVer, *pages, strBlobPathRemote},
              NoFile::kClearsOutputs, {strFileName, lngFileLen, strParamStatus}, result);
  });
}

Variant clsQuery::TELOTransferBLOB(const Variant& strFile, const Variant& lngFileLen, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    const std::string name = StoredName(strFile.ToText());
    const std::int32_t byteCount = lngFileLen.ToLong();
    if (byteCount < 0) throw RuntimeError(error::kInvalidProcedureCall);
    const std::string path = strBlobPathLocal + "\\" + name;
    frmControls& controls = state.apartment->controls;
    FileBeingReceived file(controls.Files(), path);
    state.transferDescription = "<" + path + ">";
    state.buffer.Clear();
    const std::string request =
        BuildRequest(std::array<Variant, 2>{"TransferBLOB", strBlobPathRemote + "\\" + name}, state.log);
    std::string errorText;
    bool received =
        state.execution.Request({.request = request, .receipt = FileReceipt{file.number(), byteCount}}, &errorText);
    const std::int32_t arrived = received ? controls.LngBytesReceived(state.execution.slot()) : 0;
    if (received && arrived != byteCount) {
      errorText = "Received " + std::to_string(arrived) + " bytes of a file of " + std::to_string(byteCount);
      state.log.Write(bytError, errorText);
      received = false;
    }
    if (!received) return WriteText(strParamStatus, errorText);
    file.Keep();
    result = Variant::Long(1);
    WriteText(strParamStatus, "");
  });
}

}  // namespace oxaqrycln
