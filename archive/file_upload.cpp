// Uploads files: from a web form into the local blob directory, and from there to the query server.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "archive/multipart_body.h"
#include "archive/stored_name.h"
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "platform/files/files.h"
#include "platform/files/replacement_file.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr std::int64_t kLargestFile = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kPieceSize = 1U << 20U;

// The bytes of a file, as many as it had when it was opened.
class FileSource final : public SendSource {
 public:
  explicit FileSource(std::string_view path) : file_(path), missing_(file_.Size()) {}
  std::int64_t byteCount() const noexcept { return missing_; }

  std::string_view NextPiece() override {
    if (missing_ == 0) return {};
    if (piece_.empty()) piece_.resize(kPieceSize);
    const std::size_t wanted = std::min<std::size_t>(piece_.size(), static_cast<std::size_t>(missing_));
    const std::size_t count = file_.Read(piece_.data(), wanted);
    if (count == 0) throw RuntimeError(error::kInputPastEnd);
    missing_ -= static_cast<std::int64_t>(count);
    return {piece_.data(), count};
  }

 private:
  InputFile file_;
  std::int64_t missing_;
  std::vector<char> piece_;
};

// Writes the file of a form to a temporary file in the blob directory, which Commit renames.
class UploadedFile final : public MultipartBody::Sink {
 public:
  UploadedFile(const SessionLog& log, std::string directory, const Variant& prefix)
      : log_(log),
        directory_(std::move(directory)),
        prefix_(prefix.IsMissing() ? std::string() : prefix.ToText() + "_") {}

  bool Begin(std::string_view clientName) override {
    const std::string_view last = LastPathPart(clientName);
    if (last.empty()) return false;
    const std::string name = prefix_ + std::string(last);
    // A separator in the prefix would lead out of the directory, so such a name is refused rather than cut.
    if (StoredName(name) != name) throw RuntimeError(error::kBadFileName);
    const std::string path = directory_ + "\\" + name;
    log_.Write(bytInfo, "Uploading file '", path, "'");
    file_ = std::make_unique<ReplacementFile>(path);
    name_ = name;
    return true;
  }

  void Content(std::string_view bytes) override {
    byteCount_ += static_cast<std::int64_t>(bytes.size());
    if (byteCount_ > kLargestFile) throw RuntimeError(error::kOverflow);
    file_->Write(bytes);
  }

  void Commit() { file_->Commit(); }
  const std::string& name() const noexcept { return name_; }
  std::int32_t byteCount() const noexcept { return static_cast<std::int32_t>(byteCount_); }

 private:
  const SessionLog& log_;
  const std::string directory_;
  const std::string prefix_;
  std::string name_;
  std::unique_ptr<ReplacementFile> file_;
  std::int64_t byteCount_ = 0;
};

}  // namespace

Variant clsQuery::TELOUploadFile(const Variant& strFile, Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    const std::string name = StoredName(strFile.ToText());
    FileSource file(strBlobPathLocal + "\\" + name);
    if (file.byteCount() > kLargestFile) throw RuntimeError(error::kOverflow);
    const auto byteCount = static_cast<std::int32_t>(file.byteCount());
    const std::string request =
        BuildRequest(std::array<Variant, 4>{"UploadFile", strBlobPathRemote, name, byteCount}, state.log);
    std::string errorText;
    // The answer's lines do not go into the response buffer: the page may be walking an earlier answer.
    const bool stored = state.execution.Request({.request = request, .data = &file}, &errorText) &&
                        state.execution.DataStart(state.execution.TakeResponse().View(), errorText).has_value();
    if (!stored) return WriteText(strParamStatus, errorText);
    result = Variant::Long(1);
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::UploadFile(const Variant& strSubDir, Variant* strFileNameParam, Variant* lngFileSizeParam) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (state.pageRequest == nullptr) throw RuntimeError(error::kObjectNotSet);
    const std::shared_ptr<PageRequest> request = state.pageRequest;
    UploadedFile file(state.log, strBlobPathLocal, strSubDir);
    MultipartBody body(file);
    std::int64_t missing = request->TotalBytes();
    while (missing > 0 && !body.HasFile()) {
      const Variant::Bytes piece = request->BinaryRead(std::min<std::int64_t>(missing, kPieceSize));
      if (piece.empty()) break;  // the client has disconnected
      body.Take({reinterpret_cast<const char*>(piece.data()), piece.size()});
      missing -= static_cast<std::int64_t>(piece.size());
    }
    const bool hasFile = body.Finish();
    if (hasFile) {
      file.Commit();
      WriteText(strFileNameParam, file.name());
      if (lngFileSizeParam != nullptr) *lngFileSizeParam = file.byteCount();
    }
    result = Variant::Long(hasFile ? 1 : 0);
  });
}

}  // namespace oxaqrycln
