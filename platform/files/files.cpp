#include "platform/files/files.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <system_error>
#include <utility>

#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 255;

// Names that Windows takes for devices, whatever extension follows.
bool IsDeviceName(std::string_view name) {
  static constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
  std::string stem = UpperCase(name.substr(0, name.find('.')));
  stem.erase(stem.find_last_not_of(' ') + 1);
  if (std::ranges::find(kDevices, stem) != kDevices.end()) return true;
  const bool numbered = stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT"));
  // Windows takes the superscript digits for digits.
  return numbered && std::string_view("123456789\xB9\xB2\xB3").find(stem[3]) != std::string_view::npos;
}

struct ErrorPair {
  std::errc code;
  std::int32_t number;
};
constexpr ErrorPair kErrors[] = {{std::errc::not_a_directory, error::kPathNotFound},
                                 {std::errc::too_many_symbolic_link_levels, error::kPathNotFound},
                                 {std::errc::filename_too_long, error::kBadFileName},
                                 {std::errc::invalid_argument, error::kBadFileName},
                                 {std::errc::bad_file_descriptor, error::kBadFileName},
                                 {std::errc::file_exists, error::kFileAlreadyExists},
                                 {std::errc::too_many_files_open, error::kTooManyFiles},
                                 {std::errc::too_many_files_open_in_system, error::kTooManyFiles},
                                 {std::errc::no_space_on_device, error::kDiskFull},
                                 {std::errc::file_too_large, error::kDiskFull},
                                 {std::errc::permission_denied, error::kPermissionDenied},
                                 {std::errc::operation_not_permitted, error::kPermissionDenied},
                                 {std::errc::device_or_resource_busy, error::kPermissionDenied},
                                 {std::errc::text_file_busy, error::kPermissionDenied},
                                 {std::errc::is_a_directory, error::kPathFileAccess},
                                 {std::errc::directory_not_empty, error::kPathFileAccess},
                                 {std::errc::read_only_file_system, error::kPathFileAccess},
                                 {std::errc::not_enough_memory, error::kOutOfMemory}};

// The one place where errors of the file system become run-time errors. missing is the error for what is not there.
std::int32_t NumberOf(const std::error_code& code, std::int32_t missing) noexcept {
  if (code == std::errc::no_such_file_or_directory) return missing;
  const auto* const known = std::ranges::find_if(kErrors, [&](const ErrorPair& pair) { return code == pair.code; });
  return known == std::end(kErrors) ? error::kDeviceInputOutput : known->number;
}

void Check(const std::error_code& code, std::int32_t missing = error::kFileNotFound) {
  if (code) throw RuntimeError(NumberOf(code, missing));
}

NativeFile Open(std::string_view path, OpenFor purpose) {
  std::error_code failed;
  const NativeFile file = OpenNative(NativePath(path), purpose, failed);
  // A file to be made is not missing itself; its directory is.
  Check(failed, purpose == OpenFor::Reading ? error::kFileNotFound : error::kPathNotFound);
  return file;
}

// The empty path is the current directory.
fs::path DirectoryPath(std::string_view path) { return path.empty() ? fs::path(".") : NativePath(path); }

}  // namespace

fs::path NativePath(std::string_view path) {
  if (path.empty() || path.find('\0') != std::string_view::npos) throw RuntimeError(error::kBadFileName);
  const std::string text = ToUtf8(path);
  std::u8string native(text.begin(), text.end());
  std::ranges::replace(native, u8'\\', u8'/');
  return native;
}

std::string_view LastPathPart(std::string_view path) noexcept {
  const std::size_t separator = path.find_last_of("\\/");
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

bool IsPlainFileName(std::string_view name) noexcept {
  if (name.empty() || name.size() > kLongestName || name == "." || name == "..") return false;
  const auto forbidden = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '/' || c == '\\' || c == ':';
  };
  if (std::ranges::any_of(name, forbidden)) return false;
  if (name.back() == '.' || name.back() == ' ') return false;
  return !IsDeviceName(name);
}

OpenedFile::~OpenedFile() {
  if (file_ != kNoFile) CloseNative(file_);
}

OutputFile::OutputFile(std::string_view path, Existing existing)
    : OpenedFile(Open(path, existing == Existing::Refused ? OpenFor::MakingNew : OpenFor::Writing)) {}

std::unique_ptr<OutputFile> OutputFile::MakeUnnamed(std::string_view directory) {
  const NativeFile file = OpenUnnamed(DirectoryPath(directory));
  return file == kNoFile ? nullptr
                         : std::unique_ptr<OutputFile>(new OutputFile(file));  // NOLINT: a private constructor
}

void OutputFile::LinkAs(std::string_view path) { Check(LinkUnnamed(file_, NativePath(path))); }

void OutputFile::Write(std::string_view bytes) { Check(WriteNative(file_, bytes)); }

void OutputFile::Close() { Check(CloseNative(std::exchange(file_, kNoFile))); }

InputFile::InputFile(std::string_view path) : OpenedFile(Open(path, OpenFor::Reading)) {
  // A directory can be opened, but not be read; reading a pipe would wait for its other end.
  if (SizeOf(file_) < 0) throw RuntimeError(error::kPathFileAccess);
}

std::int64_t InputFile::Size() const { return SizeOf(file_); }

std::size_t InputFile::Read(char* to, std::size_t room) {
  std::size_t byteCount = 0;
  Check(ReadNative(file_, to, room, byteCount));
  return byteCount;
}

void AppendToFile(std::string_view path, std::span<const std::string_view> pieces) {
  std::size_t byteCount = 0;
  for (const std::string_view piece : pieces) byteCount += piece.size();
  const OpenedFile file(Open(path, OpenFor::Appending));
  std::size_t written = 0;
  Check(AppendNative(file.native(), pieces, written));
  if (written == byteCount) return;
  // Takes the bytes back, unless others have appended after them.
  const std::int64_t end = PositionOf(file.native());
  if (end >= 0 && SizeOf(file.native()) == end) Truncate(file.native(), end - static_cast<std::int64_t>(written));
  throw RuntimeError(error::kDiskFull);
}

void AppendWhole(std::string_view path, std::string_view text) {
  const fs::path native = NativePath(path);
  std::error_code failed;
  NativeFile opened = OpenNative(native, OpenFor::MakingNew, failed);
  const bool isNew = opened != kNoFile;
  if (failed == std::errc::file_exists) opened = OpenNative(native, OpenFor::Appending, failed);
  Check(failed, error::kPathNotFound);
  OpenedFile file(opened);
  const std::int64_t before = SizeOf(file.native());
  failed = WriteNative(file.native(), text);
  if (failed && before >= 0) Truncate(file.native(), before);
  const std::error_code unclosed = file.Release();
  if (!failed) failed = unclosed;
  if (!failed) return;
  std::error_code ignored;  // the error of the writing is the one to report
  if (isNew) fs::remove(native, ignored);
  Check(failed);
}

void WriteFile(std::string_view path, std::string_view content) {
  const fs::path native = NativePath(path);
  OpenedFile file(Open(path, OpenFor::Writing));
  std::error_code failed = WriteNative(file.native(), content);
  const std::error_code unclosed = file.Release();
  if (!failed) failed = unclosed;
  if (!failed) return;
  std::error_code ignored;  // the error of the writing is the one to report
  fs::remove(native, ignored);
  Check(failed);
}

void RemoveFile(std::string_view path) {
  const fs::path native = NativePath(path);
  std::error_code failed;
  const fs::file_status status = fs::symlink_status(native, failed);
  Check(failed);
  if (fs::is_directory(status)) throw RuntimeError(error::kPathFileAccess);
  if (!fs::remove(native, failed) && !failed) throw RuntimeError(error::kFileNotFound);
  Check(failed);
}

void RenameFile(std::string_view from, std::string_view to) {
  std::error_code failed;
  fs::rename(NativePath(from), NativePath(to), failed);
  Check(failed);
}

void RemoveEmptyDirectory(std::string_view path) {
  const fs::path native = NativePath(path);
  std::error_code failed;
  const fs::file_status status = fs::symlink_status(native, failed);
  Check(failed, error::kPathNotFound);
  if (!fs::is_directory(status)) throw RuntimeError(error::kPathNotFound);
  Check(RemoveNativeDirectory(native), error::kPathNotFound);
}

bool IsOtherThanFile(std::string_view path) {
  std::error_code failed;
  const fs::file_status status = fs::status(NativePath(path), failed);
  return fs::exists(status) && !fs::is_regular_file(status);
}

std::vector<DirectoryEntry> ListDirectory(std::string_view path) {
  std::error_code failed;
  fs::directory_iterator each(DirectoryPath(path), failed);
  Check(failed, error::kPathNotFound);
  std::vector<DirectoryEntry> entries;
  for (; each != fs::directory_iterator(); each.increment(failed)) {
    const std::u8string name = each->path().filename().u8string();
    auto text = FromUtf8(std::string(name.begin(), name.end()));
    // A name without a form in the code page cannot be expressed here; one with a "\" would be taken for a path.
    if (!text || text->find('\\') != std::string::npos) continue;
    std::error_code unknown;
    entries.push_back({std::move(*text), fs::is_directory(each->symlink_status(unknown))});
  }
  Check(failed);
  std::ranges::sort(entries, {}, &DirectoryEntry::name);
  return entries;
}

}  // namespace oxaqrycln
