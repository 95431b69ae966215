// new_file.h - a file that a command makes: it appears under its name complete or not at all.
// It is written in a temporary directory beside its target, which is removed with the object.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_NEW_FILE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_NEW_FILE_H_

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace oxaqrycln::oxaqry {

class NewFile {
 public:
  // The unfinished file has the name of the target, or the given one. Raises CommandError when the target exists and
  // may not be overwritten, and when the directory cannot be written.
  NewFile(std::filesystem::path target, bool overwrite, const std::string& name = "");
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  const std::filesystem::path& target() const noexcept { return target_; }
  const std::filesystem::path& directory() const noexcept { return directory_; }
  // The path of the unfinished file.
  const std::filesystem::path& part() const noexcept { return part_; }
  // Fills the unfinished file. Calls onPiece with the number of bytes copied so far, and passes on what it raises.
  void CopyFrom(const std::filesystem::path& source, const std::function<void(std::int64_t)>& onPiece) const;
  // Moves the file to its target. Raises CommandError, also when a file has appeared there meanwhile that may not be
  // overwritten.
  void Commit();

 private:
  const std::filesystem::path target_;
  const bool overwrite_;
  std::filesystem::path directory_;
  std::filesystem::path part_;
};

// Raises CommandError when the target exists and may not be overwritten.
void CheckTarget(const std::filesystem::path& target, bool overwrite);

// A file of another program or class, which is deleted with the object unless it is kept.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::filesystem::path path) : path_(std::move(path)) {}
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  void Keep() noexcept { path_.clear(); }

 private:
  std::filesystem::path path_;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_NEW_FILE_H_
