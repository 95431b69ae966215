#include "platform/files/native_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <string>
#include <vector>

namespace oxaqrycln {
namespace {

constexpr mode_t kFileMode = 0640;

std::error_code LastError() noexcept {
  const int number = errno == EDQUOT ? ENOSPC : errno;
  return {number, std::generic_category()};
}

int Flags(OpenFor purpose) noexcept {
  switch (purpose) {
    case OpenFor::Reading:
      return O_RDONLY;
    case OpenFor::Writing:
      return O_WRONLY | O_CREAT | O_TRUNC;
    case OpenFor::MakingNew:
      return O_WRONLY | O_CREAT | O_EXCL | O_APPEND;
    case OpenFor::Appending:
      return O_WRONLY | O_CREAT | O_APPEND;
  }
  return O_RDONLY;
}

int Descriptor(NativeFile file) noexcept { return static_cast<int>(file); }

// The name under which a process reaches the file of an open descriptor.
std::array<char, 32> DescriptorPath(NativeFile file) noexcept {
  std::array<char, 32> path{};
  std::snprintf(path.data(), path.size(), "/proc/self/fd/%d", Descriptor(file));
  return path;
}

}  // namespace

NativeFile OpenNative(const std::filesystem::path& path, OpenFor purpose, std::error_code& error) noexcept {
  const int descriptor = open(path.c_str(), Flags(purpose) | O_CLOEXEC | O_NONBLOCK, kFileMode);
  error = descriptor < 0 ? LastError() : std::error_code();
  return descriptor < 0 ? kNoFile : descriptor;
}

NativeFile OpenUnnamed(const std::filesystem::path& directory) noexcept {
  const int descriptor = open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kFileMode);
  if (descriptor < 0) return kNoFile;
  // Without a mounted /proc it could not be named later.
  if (access(DescriptorPath(descriptor).data(), F_OK) == 0) return descriptor;
  close(descriptor);
  return kNoFile;
}

std::error_code LinkUnnamed(NativeFile file, const std::filesystem::path& path) noexcept {
  const int failed = linkat(AT_FDCWD, DescriptorPath(file).data(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW);
  return failed != 0 ? LastError() : std::error_code();
}

std::error_code RemoveNativeDirectory(const std::filesystem::path& path) noexcept {
  return rmdir(path.c_str()) != 0 ? LastError() : std::error_code();
}

std::error_code CloseNative(NativeFile file) noexcept {
  return close(Descriptor(file)) != 0 ? LastError() : std::error_code();
}

std::error_code ReadNative(NativeFile file, char* to, std::size_t room, std::size_t& byteCount) noexcept {
  ssize_t count = 0;
  do {
    count = read(Descriptor(file), to, room);
  } while (count < 0 && errno == EINTR);
  byteCount = count < 0 ? 0 : static_cast<std::size_t>(count);
  return count < 0 ? LastError() : std::error_code();
}

std::error_code WriteNative(NativeFile file, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written = write(Descriptor(file), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return LastError();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code AppendNative(NativeFile file, std::span<const std::string_view> pieces, std::size_t& byteCount) {
  std::vector<iovec> parts;
  parts.reserve(pieces.size());
  for (const std::string_view piece : pieces) {
    parts.push_back({const_cast<char*>(piece.data()), piece.size()});  // NOLINT: writev does not change it
  }
  const int count = static_cast<int>(std::min<std::size_t>(parts.size(), IOV_MAX));
  const ssize_t written = writev(Descriptor(file), parts.data(), count);
  byteCount = written < 0 ? 0 : static_cast<std::size_t>(written);
  return written < 0 ? LastError() : std::error_code();
}

std::int64_t PositionOf(NativeFile file) noexcept { return lseek(Descriptor(file), 0, SEEK_CUR); }

std::int64_t SizeOf(NativeFile file) noexcept {
  struct stat status {};
  return fstat(Descriptor(file), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : -1;
}

void Truncate(NativeFile file, std::int64_t byteCount) noexcept {
  [[maybe_unused]] const int failed = ftruncate(Descriptor(file), byteCount);
}

}  // namespace oxaqrycln
