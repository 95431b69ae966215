// blob_directory.h - the directory that the server shares with web servers, and the files in it.
// Every name that a client sends is checked here: nothing outside of the directory is read or written.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files/files.h"
#include "platform/files/replacement_file.h"

namespace oxaqrycln::devserver {

// Reports a refusal as a ServerError, and a failure of the file system as a RuntimeError.
class BlobDirectory {
 public:
  // The directory of that path, created when there is none.
  static BlobDirectory At(const std::string& path);
  // A new directory under the machine's temporary one, removed with its owner.
  static BlobDirectory Private();
  BlobDirectory(BlobDirectory&& other) noexcept;
  BlobDirectory& operator=(BlobDirectory&&) = delete;
  ~BlobDirectory();

  // In the encoding of the file system.
  const std::string& path() const noexcept { return path_; }

  // Raises ServerError unless the text names this directory; the empty text does as well.
  void Require(std::string_view directory) const;
  // Opens a file by a client's path, whose directory must be this one. Links and what is no regular file are refused.
  std::unique_ptr<InputFile> Open(std::string_view path) const;
  // The bytes of such a file.
  std::string Read(std::string_view path, std::int64_t mostByteCount) const;
  // The file replaces an older one of that plain name when it is committed.
  std::unique_ptr<ReplacementFile> Replace(std::string_view name) const;
  // Stores the bytes in a file of their own and returns its name: the one given, or "name-3f9a01bc.csv" where "name" is
  // in use with any extension (clients may change the extension of a file they were given).
  std::string Store(const std::string& name, std::string_view bytes) const;

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
