// blob_directory.h - the directory that the server shares with web servers, and the files in it.
// Every name that a client sends is checked here: nothing outside of the directory is read or written.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files/files.h"
#include "platform/files/replacement_file.h"

namespace oxaqrycln::devserver {

// Invalid requests raise ServerError, failures of the file system RuntimeError.
class BlobDirectory {
 public:
  // The directory of that path, created when there is none.
  static BlobDirectory At(const std::string& path);
  // A new directory under the machine's temporary one, removed with its owner.
  static BlobDirectory Private();
  BlobDirectory(BlobDirectory&& other) noexcept;
  BlobDirectory& operator=(BlobDirectory&&) = delete;
  ~BlobDirectory();

  // In the encoding of the file system's names.
  const std::string& path() const noexcept { return path_; }

  // Raises ServerError unless the path is empty or names this directory.
  void Require(std::string_view directory) const;
  // Opens the file of a client's path, which must lie in this directory. Refuses links, and anything but regular files.
  std::unique_ptr<InputFile> Open(std::string_view path) const;
  // The same for a file that may not be larger than that.
  std::unique_ptr<InputFile> Open(std::string_view path, std::int64_t mostByteCount) const;
  // The bytes of such a file.
  std::string Read(std::string_view path, std::int64_t mostByteCount) const;
  // A file that replaces any older one of that plain name when it is committed.
  std::unique_ptr<ReplacementFile> Replace(std::string_view name) const;
  // Stores the bytes in a new file and returns its name: the given one, or one like "name-3f9a01bc.csv" when a file
  // "name" exists with any extension (clients may change the extension of a file they were given).
  std::string Store(const std::string& name, std::string_view bytes) const;
  // The same for what write(file) writes.
  std::string Store(const std::string& name, const std::function<void(ReplacementFile&)>& write) const;

 private:
  BlobDirectory(const std::string& path, bool isPrivate);
  // The path of a plain file name, in the code page.
  std::string PathOf(std::string_view name) const;
  bool HoldsStem(const std::string& stem) const;

  std::string path_;
  std::string codePagePath_;
  bool isPrivate_;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_
