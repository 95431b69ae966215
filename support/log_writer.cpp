#include "support/log_writer.h"

#include <vector>

#include "platform/files/files.h"

namespace oxaqrycln {
namespace {

std::string_view Prefix(int level) noexcept {
  switch (level) {
    case bytWarning:
      return "!!! <WARNING> ";
    case bytError:
      return "### <ERROR> ";
    case bytExtended:
      return "+++ <DEBUG> ";
    default:
      return "    ";
  }
}

}  // namespace

void SessionLog::WriteLine(int level, std::span<const std::string_view> texts) const {
  const std::string file = *sessionId_ + ".log";
  if (!IsPlainFileName(file)) return;
  const std::string time = clock_.Now().ToText() + " ";
  std::vector<std::string_view> pieces;
  pieces.reserve(texts.size() + 3);
  pieces.push_back(time);
  pieces.push_back(Prefix(level));
  pieces.insert(pieces.end(), texts.begin(), texts.end());
  pieces.emplace_back("\r\n");
  AppendToFile(*directory_ + "\\" + file, pieces);
}

void SessionLog::WriteProcessingError(std::string_view routine, const RuntimeError& error) const noexcept {
  if (firstError_ != nullptr && firstError_->number == 0) {
    firstError_->number = error.number();
    try {
      firstError_->description = error.description();
    } catch (...) {  // no memory is left for the text; the number says enough
      firstError_->description.clear();
    }
  }
  Write(bytError, "Processing error in function '", routine, "()': ", error.number(), " - ", error.description());
}

}  // namespace oxaqrycln
