// new_file.h - a file that a command makes for a person: it appears under its name complete or not at all.
// It is written in a directory of its own beside its place, which goes with the object.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_NEW_FILE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_NEW_FILE_H_

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace oxaqrycln::oxaqry {

class NewFile {
 public:
  // The last part of the target, or the given name, is the name of the unfinished file. Raises CommandError for a
  // target that exists, unless it may be overwritten, and where nothing can be written.
  NewFile(std::filesystem::path target, bool overwrite, const std::string& name = "");
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  const std::filesystem::path& target() const noexcept { return target_; }
  const std::filesystem::path& directory() const noexcept { return directory_; }
  // Where the content is to be put.
  const std::filesystem::path& part() const noexcept { return part_; }
  // Fills the unfinished file; tells the number of bytes copied between two pieces, and raises what that raises.
  void CopyFrom(const std::filesystem::path& source, const std::function<void(std::int64_t)>& onPiece) const;
  // Puts the file in its place. Raises CommandError, also when a file has appeared there meanwhile and may not be
  // overwritten.
  void Commit();

 private:
  const std::filesystem::path target_;
  const bool overwrite_;
  std::filesystem::path directory_;
  std::filesystem::path part_;
};

// Raises CommandError when a file stands at the target that may not be overwritten.
void CheckTarget(const std::filesystem::path& target, bool overwrite);

// A file that is deleted with the object.
class PassingFile {
 public:
  explicit PassingFile(std::filesystem::path path) : path_(std::move(path)) {}
  ~PassingFile();
  PassingFile(const PassingFile&) = delete;
  PassingFile& operator=(const PassingFile&) = delete;
  void Keep() noexcept { path_.clear(); }

 private:
  std::filesystem::path path_;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_NEW_FILE_H_
