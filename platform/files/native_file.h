// native_file.h - the system's calls for an open file. Errors are codes of the generic category or of the system's.
#ifndef OXAQRYCLN_PLATFORM_FILES_NATIVE_FILE_H_
#define OXAQRYCLN_PLATFORM_FILES_NATIVE_FILE_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <system_error>

namespace oxaqrycln {

using NativeFile = std::intptr_t;
inline constexpr NativeFile kNoFile = -1;

// Reading an existing file; writing from its start, making or emptying it; making a file that must not exist yet;
// appending, making it where it does not exist.
enum class OpenFor { Reading, Writing, MakingNew, Appending };

// A new file is readable by its owner and group only. Does not wait for the other end of a pipe.
NativeFile OpenNative(const std::filesystem::path& path, OpenFor purpose, std::error_code& error) noexcept;
// A file without a name in the directory; kNoFile where the system has none that could be named later.
NativeFile OpenUnnamed(const std::filesystem::path& directory) noexcept;
// Names a file of OpenUnnamed.
std::error_code LinkUnnamed(NativeFile file, const std::filesystem::path& path) noexcept;
// Removes an empty directory.
std::error_code RemoveNativeDirectory(const std::filesystem::path& path) noexcept;
std::error_code CloseNative(NativeFile file) noexcept;
// Up to room bytes into byteCount; 0 at the end of the file only.
std::error_code ReadNative(NativeFile file, char* to, std::size_t room, std::size_t& byteCount) noexcept;
// All the bytes, in as many calls as it takes.
std::error_code WriteNative(NativeFile file, std::string_view bytes) noexcept;
// Appends the pieces in one call; byteCount receives how many bytes were written, which may be fewer.
std::error_code AppendNative(NativeFile file, std::span<const std::string_view> pieces, std::size_t& byteCount);
// The position after the last byte written.
std::int64_t PositionOf(NativeFile file) noexcept;
// The length of a regular file; -1 for a directory, a pipe or a device.
std::int64_t SizeOf(NativeFile file) noexcept;
// Cuts a file off.
void Truncate(NativeFile file, std::int64_t byteCount) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_FILES_NATIVE_FILE_H_
