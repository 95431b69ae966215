// blob_directory.h - the directory that the server shares with web servers, and the files in it.
// Every name that a client sends passes through here: nothing outside of the directory is read or written.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/devserver/content/descriptor.h"

namespace oxaqrycln::devserver {

// A file of the directory, open for reading from its start.
class ReadableFile {
 public:
  ReadableFile(Descriptor descriptor, std::int64_t byteCount)
      : descriptor_(std::move(descriptor)), byteCount_(byteCount) {}
  // The length when it was opened.
  std::int64_t byteCount() const noexcept { return byteCount_; }
  // Reads up to room bytes; 0 at the end only. Raises ServerError.
  std::size_t Read(char* to, std::size_t room);
  // Back to its start, after the descriptor was used.
  void Rewind();
  int descriptor() const noexcept { return descriptor_.get(); }

 private:
  Descriptor descriptor_;
  std::int64_t byteCount_;
};

// A file that appears in the directory complete or not at all: written beside its place, brought to the disk, renamed.
// Must not outlive its directory. Every function raises ServerError.
class PendingFile {
 public:
  PendingFile(int directory, std::string name);
  // Deletes the file unless it was committed.
  ~PendingFile();
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  // The name it is to get, or got when it was committed.
  const std::string& name() const noexcept { return name_; }
  // For writers that want a descriptor of their own.
  int descriptor() const noexcept { return descriptor_.get(); }
  void Write(std::string_view bytes);
  // Replaces an older file of that name. Gives the length in bytes.
  std::int64_t Commit();
  // As Commit, but never in the place of another file: "name-3f9a01bc.csv" where "name" is in use, with any extension
  // (clients may change that of a file they were given).
  std::int64_t CommitUnderFreeName();

 private:
  std::int64_t Sync() const;
  void SyncDirectory() const;

  int directory_;
  std::string name_;
  std::string temporary_;  // "" once committed
  Descriptor descriptor_;
};

class BlobDirectory {
 public:
  // A directory of that path (in the file system's encoding), made when there is none. Leftovers of servers that were
  // killed are removed.
  static BlobDirectory At(const std::string& path);
  // A directory of its own under the machine's temporary one, removed with its owner.
  static BlobDirectory Private();
  BlobDirectory(BlobDirectory&&) noexcept = default;
  BlobDirectory& operator=(BlobDirectory&&) = delete;
  ~BlobDirectory();

  const std::string& path() const noexcept { return path_; }

  // Raises ServerError unless the text names this directory; "" stands for it as well.
  void Require(std::string_view directory) const;
  // The name part of a client's path, whose directory part must name this directory.
  std::string NameOf(std::string_view path) const;
  // name: a plain file name. Links and what is no regular file are refused.
  ReadableFile Open(std::string_view name) const;
  std::unique_ptr<PendingFile> Create(std::string_view name) const;

 private:
  BlobDirectory(std::string path, bool isPrivate);
  void RemoveLeftovers() const;

  std::string path_;
  bool isPrivate_;
  Descriptor descriptor_;
};

// Commits the file under a name of its own, since nobody knows who has not read the last one yet. Gives the lines of
// the answer: its length and its name.
std::string CommitAndTell(PendingFile& file);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_CONTENT_BLOB_DIRECTORY_H_
