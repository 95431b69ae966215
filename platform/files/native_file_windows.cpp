#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/files/native_file.h"

namespace oxaqrycln {
namespace {

struct NativeError {
  DWORD native;
  std::errc generic;
};

// The one place where errors of files become those of the generic category.
std::error_code LastError() noexcept {
  static constexpr NativeError kPairs[] = {{ERROR_FILE_NOT_FOUND, std::errc::no_such_file_or_directory},
                                           {ERROR_PATH_NOT_FOUND, std::errc::no_such_file_or_directory},
                                           {ERROR_INVALID_DRIVE, std::errc::no_such_file_or_directory},
                                           {ERROR_BAD_NETPATH, std::errc::no_such_file_or_directory},
                                           {ERROR_TOO_MANY_OPEN_FILES, std::errc::too_many_files_open},
                                           {ERROR_ACCESS_DENIED, std::errc::permission_denied},
                                           {ERROR_SHARING_VIOLATION, std::errc::device_or_resource_busy},
                                           {ERROR_LOCK_VIOLATION, std::errc::device_or_resource_busy},
                                           {ERROR_INVALID_HANDLE, std::errc::bad_file_descriptor},
                                           {ERROR_NOT_ENOUGH_MEMORY, std::errc::not_enough_memory},
                                           {ERROR_OUTOFMEMORY, std::errc::not_enough_memory},
                                           {ERROR_WRITE_PROTECT, std::errc::read_only_file_system},
                                           {ERROR_HANDLE_DISK_FULL, std::errc::no_space_on_device},
                                           {ERROR_DISK_FULL, std::errc::no_space_on_device},
                                           {ERROR_FILE_EXISTS, std::errc::file_exists},
                                           {ERROR_ALREADY_EXISTS, std::errc::file_exists},
                                           {ERROR_INVALID_NAME, std::errc::invalid_argument},
                                           {ERROR_BAD_PATHNAME, std::errc::invalid_argument},
                                           {ERROR_FILENAME_EXCED_RANGE, std::errc::filename_too_long},
                                           {ERROR_DIR_NOT_EMPTY, std::errc::directory_not_empty},
                                           {ERROR_DIRECTORY, std::errc::not_a_directory}};
  const auto* const known = std::ranges::find(kPairs, GetLastError(), &NativeError::native);
  return std::make_error_code(known == std::end(kPairs) ? std::errc::io_error : known->generic);
}

HANDLE HandleOf(NativeFile file) noexcept { return reinterpret_cast<HANDLE>(file); }  // NOLINT: a handle is a number

// The length of one read or write.
DWORD Length(std::size_t byteCount) noexcept {
  return static_cast<DWORD>(std::min<std::size_t>(byteCount, std::size_t{1} << 30U));
}

bool IsDirectory(const std::filesystem::path& path) noexcept {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsNameTooLong(const std::filesystem::path& path) noexcept {
  constexpr std::size_t kMostCharacters = 255;
  const std::wstring& text = path.native();
  return text.size() - (text.find_last_of(L"/\\") + 1) > kMostCharacters;
}

std::error_code Outcome(BOOL succeeded) noexcept { return succeeded == 0 ? LastError() : std::error_code(); }

}  // namespace

NativeFile OpenNative(const std::filesystem::path& path, OpenFor purpose, std::error_code& error) noexcept {
  struct Way {
    DWORD access;
    DWORD creation;
  };
  static constexpr Way kWays[] = {{GENERIC_READ, OPEN_EXISTING},
                                  {GENERIC_WRITE, CREATE_ALWAYS},
                                  {GENERIC_WRITE, CREATE_NEW},
                                  {GENERIC_WRITE, OPEN_ALWAYS}};
  const Way& way = kWays[static_cast<std::size_t>(purpose)];
  // With backup semantics a directory can be opened for reading, as a file of no known size.
  const DWORD flags = FILE_ATTRIBUTE_NORMAL | (purpose == OpenFor::Reading ? FILE_FLAG_BACKUP_SEMANTICS : 0U);
  const HANDLE opened = CreateFileW(path.c_str(), way.access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, way.creation, flags, nullptr);
  if (opened != INVALID_HANDLE_VALUE) {
    error = {};
    // Access for appending only would write at the end by itself, but would not let the file be cut to its former
    // length.
    if (purpose == OpenFor::Appending) SetFilePointerEx(opened, {}, nullptr, FILE_END);
    return reinterpret_cast<NativeFile>(opened);
  }
  error = LastError();
  if (error == std::errc::permission_denied && IsDirectory(path)) error = make_error_code(std::errc::is_a_directory);
  // The system says only that there is no such path.
  if (IsNameTooLong(path)) error = make_error_code(std::errc::filename_too_long);
  return kNoFile;
}

NativeFile OpenUnnamed(const std::filesystem::path& /*directory*/) noexcept { return kNoFile; }

std::error_code LinkUnnamed(NativeFile /*file*/, const std::filesystem::path& /*path*/) noexcept {
  return std::make_error_code(std::errc::bad_file_descriptor);
}

std::error_code RemoveNativeDirectory(const std::filesystem::path& path) noexcept {
  return Outcome(RemoveDirectoryW(path.c_str()));
}

std::error_code CloseNative(NativeFile file) noexcept { return Outcome(CloseHandle(HandleOf(file))); }

std::error_code ReadNative(NativeFile file, char* to, std::size_t room, std::size_t& byteCount) noexcept {
  DWORD count = 0;
  const std::error_code failed = Outcome(::ReadFile(HandleOf(file), to, Length(room), &count, nullptr));
  byteCount = count;
  return failed;
}

std::error_code WriteNative(NativeFile file, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    DWORD count = 0;
    if (::WriteFile(HandleOf(file), bytes.data(), Length(bytes.size()), &count, nullptr) == 0) return LastError();
    bytes.remove_prefix(count);
  }
  return {};
}

std::error_code AppendNative(NativeFile file, std::span<const std::string_view> pieces, std::size_t& byteCount) {
  std::string text;
  for (const std::string_view piece : pieces) text.append(piece);
  // This offset makes the system write at the end, wherever others have moved it.
  OVERLAPPED atEnd{};
  atEnd.Offset = 0xFFFFFFFF;
  atEnd.OffsetHigh = 0xFFFFFFFF;
  // Wine writes there in two steps; the lock, of a byte that no file reaches, keeps other writers out meanwhile.
  OVERLAPPED locked{};
  locked.OffsetHigh = 0x7FFFFFFF;
  const bool isLocked = LockFileEx(HandleOf(file), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &locked) != 0;
  DWORD count = 0;
  const std::error_code failed = Outcome(::WriteFile(HandleOf(file), text.data(), Length(text.size()), &count, &atEnd));
  if (isLocked) UnlockFileEx(HandleOf(file), 0, 1, 0, &locked);
  byteCount = count;
  return failed;
}

std::int64_t PositionOf(NativeFile file) noexcept {
  LARGE_INTEGER position{};
  return SetFilePointerEx(HandleOf(file), {}, &position, FILE_CURRENT) == 0 ? -1 : position.QuadPart;
}

std::int64_t SizeOf(NativeFile file) noexcept {
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileType(HandleOf(file)) != FILE_TYPE_DISK || GetFileInformationByHandle(HandleOf(file), &information) == 0 ||
      (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return -1;
  }
  return static_cast<std::int64_t>(information.nFileSizeHigh) << 32U | information.nFileSizeLow;
}

void Truncate(NativeFile file, std::int64_t byteCount) noexcept {
  LARGE_INTEGER position{};
  position.QuadPart = byteCount;
  if (SetFilePointerEx(HandleOf(file), position, nullptr, FILE_BEGIN) != 0) SetEndOfFile(HandleOf(file));
}

}  // namespace oxaqrycln
