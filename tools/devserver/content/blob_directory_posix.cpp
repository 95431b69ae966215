#include "tools/devserver/content/blob_directory.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::devserver {
namespace {

std::string RandomDigits() {
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%08x", std::random_device()());
  return digits.data();
}

}  // namespace

BlobDirectory::BlobDirectory(const std::string& path, bool isPrivate)
    : path_(path), codePagePath_(FromUtf8(path).value_or("")), isPrivate_(isPrivate) {
  if (!std::filesystem::is_directory(path)) throw ServerError("Blob directory '" + path + "': no such directory");
  if (codePagePath_.empty()) throw ServerError("Blob directory '" + path + "': a character is outside Windows-1252");
}

BlobDirectory BlobDirectory::At(const std::string& path) {
  std::error_code ignored;  // the constructor reports a missing directory
  std::filesystem::create_directory(path, ignored);
  return {std::filesystem::absolute(path).string(), false};
}

BlobDirectory BlobDirectory::Private() {
  std::string path = (std::filesystem::temp_directory_path() / ("devserver-" + std::string(6, 'X'))).string();
  if (mkdtemp(path.data()) == nullptr) throw ServerError("No temporary directory could be created");
  return {path, true};
}

BlobDirectory::BlobDirectory(BlobDirectory&& other) noexcept
    : path_(std::move(other.path_)),
      codePagePath_(std::move(other.codePagePath_)),
      isPrivate_(std::exchange(other.isPrivate_, false)) {}

BlobDirectory::~BlobDirectory() {
  std::error_code ignored;
  if (isPrivate_) std::filesystem::remove_all(path_, ignored);
}

void BlobDirectory::Require(std::string_view directory) const {
  if (directory.empty()) return;
  std::error_code error;
  try {
    if (std::filesystem::equivalent(NativePath(directory), path_, error)) return;
  } catch (const RuntimeError&) {  // not a path
  }
  throw ServerError("'" + Printable(directory) + "' is not the blob directory of this server");
}

std::string BlobDirectory::PathOf(std::string_view name) const {
  if (!IsPlainFileName(name)) throw ServerError("'" + Printable(name) + "' is not a valid file name");
  return codePagePath_ + "/" + std::string(name);
}

std::unique_ptr<InputFile> BlobDirectory::Open(std::string_view path) const {
  const std::string_view name = LastPathPart(path);
  const std::string_view directory = path.substr(0, path.size() - name.size());
  Require(directory.substr(0, directory.size() - (directory.empty() ? 0 : 1)));
  const std::string file = PathOf(name);
  std::error_code ignored;  // a file that cannot be examined counts as missing
  if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(NativePath(file), ignored))) {
    throw ServerError("There is no file '" + Printable(name) + "' in the blob directory");
  }
  return std::make_unique<InputFile>(file);
}

std::unique_ptr<InputFile> BlobDirectory::Open(std::string_view path, std::int64_t mostByteCount) const {
  auto file = Open(path);
  if (file->Size() > mostByteCount) {
    throw ServerError("'" + Printable(LastPathPart(path)) + "' is larger than " + std::to_string(mostByteCount) +
                      " bytes");
  }
  return file;
}

std::string BlobDirectory::Read(std::string_view path, std::int64_t mostByteCount) const {
  const auto file = Open(path, mostByteCount);
  std::string bytes(static_cast<std::size_t>(file->Size()), '\0');
  std::size_t end = 0;
  while (const std::size_t count = file->Read(bytes.data() + end, bytes.size() - end)) end += count;
  bytes.resize(end);
  return bytes;
}

std::unique_ptr<ReplacementFile> BlobDirectory::Replace(std::string_view name) const {
  return std::make_unique<ReplacementFile>(PathOf(name));
}

bool BlobDirectory::HoldsStem(const std::string& stem) const {
  return std::ranges::any_of(ListDirectory(codePagePath_), [&](const DirectoryEntry& entry) {
    return entry.name.starts_with(stem) && (entry.name.size() == stem.size() || entry.name[stem.size()] == '.');
  });
}

std::string BlobDirectory::Store(const std::string& name, std::string_view bytes) const {
  return Store(name, [&](ReplacementFile& file) { file.Write(bytes); });
}

std::string BlobDirectory::Store(const std::string& name, const std::function<void(ReplacementFile&)>& write) const {
  const std::size_t dot = std::min(name.rfind('.'), name.size());
  const auto otherName = [&] { return name.substr(0, dot) + "-" + RandomDigits() + name.substr(dot); };
  std::string free = HoldsStem(name.substr(0, dot)) ? otherName() : name;
  // An empty file reserves the name, because another server may use this directory as well.
  constexpr int kMostAttempts = 16;
  for (int attempt = 1;; ++attempt) {
    try {
      OutputFile(PathOf(free), OutputFile::Existing::Refused).Close();
      break;
    } catch (const RuntimeError& error) {
      if (error.number() != error::kFileAlreadyExists || attempt == kMostAttempts) throw;
      free = otherName();
    }
  }
  try {
    const auto file = Replace(free);
    write(*file);
    file->Commit();
  } catch (const RuntimeError&) {
    RemoveFile(PathOf(free));
    throw;
  }
  return free;
}

}  // namespace oxaqrycln::devserver
