// files.h - files and directories as the component uses them. Paths may separate with "\" and "/" alike.
// Text is code page text; every failure is a RuntimeError with the customary number (53, 70, 75, 76, 61, ...).
#ifndef OXAQRYCLN_PLATFORM_FILES_FILES_H_
#define OXAQRYCLN_PLATFORM_FILES_FILES_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/files/native_file.h"

namespace oxaqrycln {

// The path in the form of the local file system. Raises Bad file name for an empty path and for one with a NUL.
std::filesystem::path NativePath(std::string_view path);

// The part after the last "\" or "/"; the whole text without one.
std::string_view LastPathPart(std::string_view path) noexcept;

// True for a name that denotes one file in a directory: not empty, not "." or "..", no separator, ":" or control
// character, no trailing dot or blank, no Windows device name with or without an extension, at most 255 bytes.
bool IsPlainFileName(std::string_view name) noexcept;

// An open file, closed at the end.
class OpenedFile {
 public:
  explicit OpenedFile(NativeFile file) noexcept : file_(file) {}
  ~OpenedFile();
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;

  NativeFile native() const noexcept { return file_; }
  // Closes the file at once.
  std::error_code Release() noexcept { return CloseNative(std::exchange(file_, kNoFile)); }

 protected:
  NativeFile file_;
};

// A file open for writing from its start, readable by its owner and group only. Close reports errors; the destructor
// does not.
class OutputFile : private OpenedFile {
 public:
  enum class Existing { Overwritten, Refused };
  // Creates the file. Raises File already exists where that is refused.
  explicit OutputFile(std::string_view path, Existing existing = Existing::Overwritten);

  // A file without a name in the directory, which is gone with its process however that ends, until LinkAs names it.
  // Null where the system has no such files.
  static std::unique_ptr<OutputFile> MakeUnnamed(std::string_view directory);
  // Gives a file of MakeUnnamed its name, in the same file system. Raises File already exists.
  void LinkAs(std::string_view path);

  void Write(std::string_view bytes);
  void Close();

 private:
  explicit OutputFile(NativeFile file) noexcept : OpenedFile(file) {}
};

// A regular file open for reading from its start.
class InputFile : private OpenedFile {
 public:
  explicit InputFile(std::string_view path);
  // Its present length in bytes.
  std::int64_t Size() const;
  // Reads up to room bytes from the current position; 0 at the end only.
  std::size_t Read(char* to, std::size_t room);
};

// Appends all of the text or nothing: after a failure the file has its former length, and a new file is removed.
void AppendWhole(std::string_view path, std::string_view text);
// Appends the pieces to the file in one write, creating it readable by its owner and group only. Raises Disk full when
// only a part could be written, which is cut off again unless others have appended after it.
void AppendToFile(std::string_view path, std::span<const std::string_view> pieces);
// Creates or overwrites the file. One that cannot be written whole, as on a full disk, is removed.
void WriteFile(std::string_view path, std::string_view content);
void RemoveFile(std::string_view path);
// Replaces an existing file of the new name.
void RenameFile(std::string_view from, std::string_view to);
// Removes an empty directory.
void RemoveEmptyDirectory(std::string_view path);

// Whether the name belongs to something other than a file: a directory, a pipe, a device, or a link to one.
bool IsOtherThanFile(std::string_view path);

// One entry of a directory; a link to a directory is no directory.
struct DirectoryEntry {
  std::string name;
  bool isDirectory = false;
};

// All entries but "." and "..", in the order of their names' bytes. The empty path is the current directory.
std::vector<DirectoryEntry> ListDirectory(std::string_view path);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_FILES_FILES_H_
