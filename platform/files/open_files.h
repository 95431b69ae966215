// open_files.h - files open for writing under numbers from 1 to 255, as file transfers use them.
#ifndef OXAQRYCLN_PLATFORM_FILES_OPEN_FILES_H_
#define OXAQRYCLN_PLATFORM_FILES_OPEN_FILES_H_

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/files/replacement_file.h"

namespace oxaqrycln {

class OpenFiles {
 public:
  // Opens a file that will replace the one at the path, and gives it the lowest free number. Raises Too many files and
  // the errors of the file system.
  std::uint8_t OpenForWriting(std::string_view path);
  // Writes at the current position. Raises Bad file name or number for a number that is not open, Disk full.
  void Write(std::uint8_t number, std::string_view bytes);
  // The file appears under its path, complete. The number is free afterwards, also after an error.
  void Close(std::uint8_t number);
  // The file is removed, and the number is free.
  void Discard(std::uint8_t number) noexcept { files_[number].reset(); }

 private:
  std::unique_ptr<ReplacementFile>& At(std::uint8_t number);
  std::array<std::unique_ptr<ReplacementFile>, 256> files_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_FILES_OPEN_FILES_H_
