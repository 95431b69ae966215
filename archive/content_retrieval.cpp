// The stored content of documents, brought into the local blob directory: by the query server, or over the connection.
#include <array>
#include <optional>

#include "archive/stored_name.h"
#include "component/clsQuery.h"
#include "component/file_helpers.h"
#include "component/query_state.h"
#include "component/text_helpers.h"
#include "platform/errors.h"
#include "platform/files.h"

namespace oxaqrycln {
namespace {

// The bare name of a file that the query server has put into the blob directory, after its extension was changed. An
// answer that names no file gives "".
std::string ReceivedName(const clsQuery& query, std::string_view answered) {
  if (LastPathPart(answered).empty()) return {};
  std::string name = StoredName(answered);
  const std::string path = query.strBlobPathLocal + "\\" + name;
  if (IsOtherThanFile(path)) throw RuntimeError(error::kBadFileName);
  // With a shorter name the change would cut off a part of the directory's.
  constexpr std::size_t kCutCharacters = 3;
  if (name.size() >= kCutCharacters) name = LastPathPart(ChangeFileExt(path, query.strChangeFileExt));
  return name;
}

void WriteFileOutputs(const clsQuery& query, const ResponseBuffer& buffer, Variant* fileName, Variant* fileLength) {
  // Everything that can fail comes before the first output is written.
  const std::string name = fileName != nullptr ? ReceivedName(query, buffer.Line(1)) : std::string();
  WriteText(fileName, name);
  WriteText(fileLength, buffer.Line(0));
}

// The common shape of the requests after which a file lies in the blob directory. An answer of fewer than two lines
// names no file.
template <typename... Elements>
Variant FetchFile(const clsQuery& query, QueryState& state, std::string_view routine, Variant* fileName,
                  Variant* fileLength, Variant* status, const Elements&... elements) {
  return state.Run(routine, Failed(), [&](Variant& result) {
    if (!state.Load({elements..., query.strBlobPathRemote}, status)) return;
    if (state.buffer.Count() >= 2) WriteFileOutputs(query, state.buffer, fileName, fileLength);
    result = Variant::Long(1);
    WriteText(status, "");
  });
}

// A file of OpenFiles that leaves nothing behind unless it is kept.
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
  return FetchFile(*this, *state_, "TELOGetSegmentData", strFileName, lngFileLen, strParamStatus, "GetSegmentData",
                   strChannel, strArchive, strDocID, strVer, intFieldIndex);
}

Variant clsQuery::TELOGetSegmentFirstBLOB(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                          const Variant& strVer, const Variant& strParamFileExt, Variant* strFileName,
                                          Variant* lngFileLen, Variant* strParamStatus) {
  return FetchFile(*this, *state_, "TELOGetSegmentFirstBLOB", strFileName, lngFileLen, strParamStatus,
                   "GetSegmentFirstBLOB", strChannel, strArchive, strDocID, strVer, OrText(strParamFileExt, ""));
}

Variant clsQuery::TELOGetSegmentPrintfile(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                          const Variant& strVer, const Variant& strFieldID, Variant* strFileName,
                                          Variant* lngFileLen, Variant* strParamStatus) {
  // Kept: the command word is not the method's name.
  return FetchFile(*this, *state_, "TELOGetSegmentPrintfile", strFileName, lngFileLen, strParamStatus,
                   "GetSegmentPrintfile2", strChannel, strArchive, strDocID, strVer, strFieldID);
}

Variant clsQuery::TELOGetSegmentMultiTIF(const Variant& strChannel, const Variant& strArchive, const Variant& strDocID,
                                         const Variant& strVer, const Variant& strPages, Variant* strFileName,
                                         Variant* lngFileLen, Variant* strParamStatus) {
  QueryState& state = *state_;
  return state.Run("TELOGetSegmentMultiTIF", Failed(), [&](Variant& result) {
    const auto pages = Trap(state.log, "GetPages", std::optional<std::string>(),
                            [&](std::optional<std::string>& list) { list = GetPages(strPages.ToText()); });
    if (!pages) return;
    if (!state.Load({"GetSegmentMultiTIF", strChannel, strArchive, strDocID, strVer, *pages, strBlobPathRemote},
                    strParamStatus)) {
      return;
    }
    if (state.buffer.Count() >= 2) {
      WriteFileOutputs(*this, state.buffer, strFileName, lngFileLen);
    } else {
      WriteText(strFileName, "");
      if (lngFileLen != nullptr) *lngFileLen = Variant::Long(0);
    }
    result = Variant::Long(1);
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELOTransferBLOB(const Variant& strFile, const Variant& lngFileLen, Variant* strParamStatus) {
  QueryState& state = *state_;
  return state.Run("TELOTransferBLOB", Failed(), [&](Variant& result) {
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
