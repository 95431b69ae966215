// replacement_file.h - a file that appears under its name complete or not at all: written without a name, or beside its
// place where the system has no unnamed files. Two of one name do not disturb each other; the one that is committed
// last stays.
#ifndef OXAQRYCLN_PLATFORM_FILES_REPLACEMENT_FILE_H_
#define OXAQRYCLN_PLATFORM_FILES_REPLACEMENT_FILE_H_

#include <memory>
#include <string>
#include <string_view>

#include "platform/files/files.h"

namespace oxaqrycln {

class ReplacementFile {
 public:
  // Creates a file in the directory of the target, which stays as it is.
  explicit ReplacementFile(std::string_view target);
  // Removes the file unless it was committed. Where the system has unnamed files, a process that is killed leaves
  // nothing behind either.
  ~ReplacementFile();
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;

  void Write(std::string_view bytes) { file_->Write(bytes); }
  // Puts the file in the target's place.
  void Commit();

 private:
  const std::string target_;
  std::string temporary_;  // the temporary name; "" for none
  std::unique_ptr<OutputFile> file_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_FILES_REPLACEMENT_FILE_H_
