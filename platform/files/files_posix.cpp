#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <memory>
#include <utility>

#include "platform/files/files.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

constexpr mode_t kFileMode = 0640;

// The one place where errors of the file system become run-time errors.
[[noreturn]] void RaiseFileError(int native) {
  switch (native) {
    case ENOENT:
      throw RuntimeError(error::kFileNotFound);
    case ENOTDIR:
    case ELOOP:
      throw RuntimeError(error::kPathNotFound);
    case ENAMETOOLONG:
    case EINVAL:
    case EBADF:
      throw RuntimeError(error::kBadFileName);
    case EEXIST:
      throw RuntimeError(error::kFileAlreadyExists);
    case EMFILE:
    case ENFILE:
      throw RuntimeError(error::kTooManyFiles);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      throw RuntimeError(error::kDiskFull);
    case EACCES:
    case EPERM:
    case EBUSY:
    case ETXTBSY:
      throw RuntimeError(error::kPermissionDenied);
    case EISDIR:
    case ENOTEMPTY:
    case EROFS:
      throw RuntimeError(error::kPathFileAccess);
    case ENOMEM:
      throw RuntimeError(error::kOutOfMemory);
    default:
      throw RuntimeError(error::kDeviceInputOutput);
  }
}

// Without waiting for the reader of a pipe.
int OpenToWrite(std::string_view path, int flags) {
  const int descriptor = open(NativePath(path).c_str(), flags | O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, kFileMode);
  // A file to be made is not missing itself; its directory is.
  if (descriptor < 0 && errno == ENOENT) throw RuntimeError(error::kPathNotFound);
  if (descriptor < 0) RaiseFileError(errno);
  return descriptor;
}

// 0, or the error that kept bytes from being written.
int WriteAll(int descriptor, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

// Takes the bytes back that this descriptor has appended last, unless others have appended behind them.
void CutOff(int descriptor, ssize_t byteCount) noexcept {
  struct stat now {};
  const off_t end = lseek(descriptor, 0, SEEK_CUR);
  if (end < 0 || fstat(descriptor, &now) != 0 || !S_ISREG(now.st_mode) || now.st_size != end) return;
  [[maybe_unused]] const int undone = ftruncate(descriptor, end - byteCount);
}

// The name under which a process reaches the file of an open descriptor.
std::string DescriptorPath(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

}  // namespace

std::string NativePath(std::string_view path) {
  if (path.empty() || path.find('\0') != std::string_view::npos) throw RuntimeError(error::kBadFileName);
  std::string native = ToUtf8(path);
  std::ranges::replace(native, '\\', '/');
  return native;
}

void AppendToFile(std::string_view path, std::span<const std::string_view> pieces) {
  std::vector<iovec> parts;
  parts.reserve(pieces.size());
  for (const std::string_view piece : pieces) {
    parts.push_back({const_cast<char*>(piece.data()), piece.size()});  // NOLINT: writev does not change it
  }
  std::size_t byteCount = 0;
  for (const std::string_view piece : pieces) byteCount += piece.size();
  const int descriptor = OpenToWrite(path, O_APPEND);
  const ssize_t written =
      writev(descriptor, parts.data(), static_cast<int>(std::min<std::size_t>(parts.size(), IOV_MAX)));
  int native = written < 0 ? errno : 0;
  if (written >= 0 && static_cast<std::size_t>(written) < byteCount) {
    CutOff(descriptor, written);
    native = ENOSPC;
  }
  close(descriptor);
  if (native != 0) RaiseFileError(native);
}

void AppendWhole(std::string_view path, std::string_view text) {
  bool isNew = true;
  int descriptor = -1;
  try {
    descriptor = OpenToWrite(path, O_APPEND | O_EXCL);
  } catch (const RuntimeError& why) {
    if (why.number() != error::kFileAlreadyExists) throw;
    isNew = false;
    descriptor = OpenToWrite(path, O_APPEND);
  }
  struct stat before {};
  int native = fstat(descriptor, &before) == 0 ? 0 : errno;
  if (native == 0) {
    native = WriteAll(descriptor, text);
    // The error of the writing is told, whatever becomes of taking back what was written of it.
    if (native != 0 && S_ISREG(before.st_mode)) {
      [[maybe_unused]] const int undone = ftruncate(descriptor, before.st_size);
    }
  }
  if (close(descriptor) != 0 && native == 0) native = errno;
  if (native == 0) return;
  if (isNew) unlink(NativePath(path).c_str());
  RaiseFileError(native);
}

OutputFile::OutputFile(std::string_view path, Existing existing)
    : descriptor_(OpenToWrite(path, existing == Existing::Refused ? O_EXCL : O_TRUNC)) {}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::unique_ptr<OutputFile> OutputFile::MakeUnnamed(std::string_view directory) {
  const std::string native = directory.empty() ? "." : NativePath(directory);
  std::unique_ptr<OutputFile> file(new OutputFile);  // NOLINT: the constructor is private
  file->descriptor_ = open(native.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kFileMode);
  // Without a mounted /proc it could not be named later.
  if (file->descriptor_ < 0 || access(DescriptorPath(file->descriptor_).c_str(), F_OK) != 0) return nullptr;
  return file;
}

void OutputFile::LinkAs(std::string_view path) {
  const std::string unnamed = DescriptorPath(descriptor_);
  if (linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, NativePath(path).c_str(), AT_SYMLINK_FOLLOW) != 0) {
    RaiseFileError(errno);
  }
}

void OutputFile::Write(std::string_view bytes) {
  const int native = WriteAll(descriptor_, bytes);
  if (native != 0) RaiseFileError(native);
}

void OutputFile::Close() {
  if (close(std::exchange(descriptor_, -1)) != 0) RaiseFileError(errno);
}

InputFile::InputFile(std::string_view path)
    : descriptor_(open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  if (descriptor_ < 0) RaiseFileError(errno);
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) return;
  close(descriptor_);  // a directory can be opened, but not be read; a pipe would be waited for
  throw RuntimeError(error::kPathFileAccess);
}

InputFile::~InputFile() { close(descriptor_); }

std::int64_t InputFile::Size() const {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) RaiseFileError(errno);
  return status.st_size;
}

std::size_t InputFile::Read(char* to, std::size_t room) {
  ssize_t count = 0;
  do {
    count = read(descriptor_, to, room);
  } while (count < 0 && errno == EINTR);
  if (count < 0) RaiseFileError(errno);
  return static_cast<std::size_t>(count);
}

void WriteFile(std::string_view path, std::string_view content) {
  OutputFile file(path);
  file.Write(content);
  file.Close();
}

void RemoveFile(std::string_view path) {
  if (unlink(NativePath(path).c_str()) != 0) RaiseFileError(errno);
}

void RenameFile(std::string_view from, std::string_view to) {
  if (std::rename(NativePath(from).c_str(), NativePath(to).c_str()) != 0) RaiseFileError(errno);
}

void RemoveEmptyDirectory(std::string_view path) {
  if (rmdir(NativePath(path).c_str()) == 0) return;
  if (errno == ENOENT) throw RuntimeError(error::kPathNotFound);
  RaiseFileError(errno);
}

bool IsOtherThanFile(std::string_view path) {
  struct stat status {};
  return stat(NativePath(path).c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

std::vector<DirectoryEntry> ListDirectory(std::string_view path) {
  const std::string native = path.empty() ? "." : NativePath(path);
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(native.c_str()), &closedir);
  if (directory == nullptr) {
    if (errno == ENOENT) throw RuntimeError(error::kPathNotFound);
    RaiseFileError(errno);
  }
  std::vector<DirectoryEntry> entries;
  while (const dirent* each = readdir(directory.get())) {
    const std::string name = each->d_name;
    if (name == "." || name == "..") continue;
    // A name without a form in the code page cannot be spoken of here, one with a "\\" would be taken for a path.
    auto text = FromUtf8(name);
    if (!text || text->find('\\') != std::string::npos) continue;
    struct stat status {};
    const bool known = fstatat(dirfd(directory.get()), each->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0;
    entries.push_back({std::move(*text), known && S_ISDIR(status.st_mode)});
  }
  std::ranges::sort(entries, {}, &DirectoryEntry::name);
  return entries;
}

}  // namespace oxaqrycln
