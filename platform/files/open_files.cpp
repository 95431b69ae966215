#include "platform/files/open_files.h"

#include <cstddef>
#include <utility>

#include "values/errors.h"

namespace oxaqrycln {

std::uint8_t OpenFiles::OpenForWriting(std::string_view path) {
  for (std::size_t number = 1; number < files_.size(); ++number) {
    if (files_[number] != nullptr) continue;
    files_[number] = std::make_unique<ReplacementFile>(path);
    return static_cast<std::uint8_t>(number);
  }
  throw RuntimeError(error::kTooManyFiles);
}

void OpenFiles::Write(std::uint8_t number, std::string_view bytes) { At(number)->Write(bytes); }

void OpenFiles::Close(std::uint8_t number) {
  const auto file = std::exchange(At(number), nullptr);
  file->Commit();
}

std::unique_ptr<ReplacementFile>& OpenFiles::At(std::uint8_t number) {
  if (files_[number] == nullptr) throw RuntimeError(error::kBadFileName);
  return files_[number];
}

}  // namespace oxaqrycln
