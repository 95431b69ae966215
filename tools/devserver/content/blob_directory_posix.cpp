#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <random>
#include <system_error>

#include "platform/files/files.h"
#include "tools/devserver/content/blob_directory.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/errors.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::string_view kPartBegin = ".devserver-";
constexpr std::string_view kPartEnd = ".part";
constexpr int kMostAttempts = 16;

[[noreturn]] void FailWithErrno(const std::string& what) {
  throw ServerError(what + ": " + std::generic_category().message(errno));
}

std::string RandomDigits(int count) {
  static constexpr std::string_view kDigits = "0123456789abcdef";
  std::random_device random;
  std::string digits;
  for (int digit = 0; digit < count; ++digit) digits += kDigits[random() % kDigits.size()];
  return digits;
}

std::string PartName() { return std::string(kPartBegin) + RandomDigits(16) + std::string(kPartEnd); }

// Whether the directory holds a file of that native name, or of that name and any extension.
bool HoldsStem(int directory, const std::string& stem) {
  const int own = openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(own < 0 ? nullptr : fdopendir(own), closedir);
  if (listing == nullptr && own >= 0) close(own);
  if (listing == nullptr) FailWithErrno("Listing the blob directory");
  while (const dirent* entry = readdir(listing.get())) {
    const std::string_view name = entry->d_name;
    if (name.starts_with(stem) && (name.size() == stem.size() || name[stem.size()] == '.')) return true;
  }
  return false;
}

// The name in the file system's encoding.
std::string NativeName(std::string_view name) {
  if (!IsPlainFileName(name) || name.starts_with(kPartBegin)) {
    throw ServerError("'" + Printable(name) + "' is no name of a file in the blob directory");
  }
  return NativePath(name);
}

std::string Storing(const std::string& name) { return "Storing '" + name + "' in the blob directory"; }

std::string MakePrivateDirectory() {
  std::string path = (std::filesystem::temp_directory_path() / ("devserver-" + std::string(6, 'X'))).string();
  if (mkdtemp(path.data()) == nullptr) FailWithErrno("Making a temporary directory");
  return path;
}

}  // namespace

std::size_t ReadableFile::Read(char* to, std::size_t room) {
  for (;;) {
    const ssize_t count = read(descriptor_.get(), to, room);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) FailWithErrno("Reading a file of the blob directory");
  }
}

void ReadableFile::Rewind() {
  if (lseek(descriptor_.get(), 0, SEEK_SET) != 0) FailWithErrno("Reading a file of the blob directory");
}

// The lock tells a server that starts in the same directory that this file is no leftover. One that looked at the file
// before it was locked may have removed it; another one is made then.
PendingFile::PendingFile(int directory, std::string name) : directory_(directory), name_(std::move(name)) {
  for (int attempt = 1; temporary_.empty(); ++attempt) {
    std::string temporary = PartName();
    descriptor_ = Descriptor(openat(directory_, temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0640));
    if (descriptor_.get() < 0) FailWithErrno("Creating a file in the blob directory");
    flock(descriptor_.get(), LOCK_EX);  // not every file system has locks
    struct stat status {};
    if (fstat(descriptor_.get(), &status) != 0) FailWithErrno("Creating a file in the blob directory");
    if (status.st_nlink > 0) temporary_ = std::move(temporary);
    if (temporary_.empty() && attempt == kMostAttempts) {
      throw ServerError("Creating a file in the blob directory: another server removes it again and again");
    }
  }
}

PendingFile::~PendingFile() {
  if (!temporary_.empty()) unlinkat(directory_, temporary_.c_str(), 0);
}

void PendingFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor_.get(), bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) FailWithErrno("Writing into the blob directory");
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::int64_t PendingFile::Sync() const {
  struct stat status {};
  if (fstat(descriptor_.get(), &status) != 0 || fsync(descriptor_.get()) != 0) FailWithErrno(Storing(name_));
  return status.st_size;
}

void PendingFile::SyncDirectory() const {
  if (fsync(directory_) != 0) FailWithErrno(Storing(name_));
}

std::int64_t PendingFile::Commit() {
  const std::int64_t byteCount = Sync();
  if (renameat(directory_, temporary_.c_str(), directory_, NativeName(name_).c_str()) != 0) {
    FailWithErrno(Storing(name_));
  }
  temporary_.clear();
  SyncDirectory();
  return byteCount;
}

std::int64_t PendingFile::CommitUnderFreeName() {
  const std::int64_t byteCount = Sync();
  const std::size_t dot = std::min(name_.rfind('.'), name_.size());
  const std::string stem = name_.substr(0, dot);
  const std::string extension = name_.substr(dot);
  std::string name = HoldsStem(directory_, NativeName(stem)) ? stem + "-" + RandomDigits(8) + extension : name_;
  // Another server of this directory may be as quick. A link, unlike a rename, replaces nothing.
  for (int attempt = 1; linkat(directory_, temporary_.c_str(), directory_, NativeName(name).c_str(), 0) != 0;
       ++attempt) {
    if (errno != EEXIST || attempt == kMostAttempts) FailWithErrno(Storing(name));
    name = stem + "-" + RandomDigits(8) + extension;
  }
  name_ = std::move(name);
  unlinkat(directory_, temporary_.c_str(), 0);
  temporary_.clear();
  SyncDirectory();
  return byteCount;
}

BlobDirectory::BlobDirectory(std::string path, bool isPrivate)
    : path_(std::move(path)),
      isPrivate_(isPrivate),
      descriptor_(open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (descriptor_.get() < 0) FailWithErrno("Blob directory '" + path_ + "'");
}

BlobDirectory BlobDirectory::At(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directory(path, error);
  BlobDirectory directory(std::filesystem::absolute(path).string(), false);
  directory.RemoveLeftovers();
  return directory;
}

BlobDirectory BlobDirectory::Private() { return {MakePrivateDirectory(), true}; }

// A directory that was moved from holds no descriptor.
BlobDirectory::~BlobDirectory() {
  if (!isPrivate_ || descriptor_.get() < 0) return;
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

void BlobDirectory::RemoveLeftovers() const {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(path_, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(kPartBegin) || !name.ends_with(kPartEnd)) continue;
    const Descriptor file(openat(descriptor_.get(), name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (file.get() >= 0 && flock(file.get(), LOCK_EX | LOCK_NB) == 0) unlinkat(descriptor_.get(), name.c_str(), 0);
  }
}

void BlobDirectory::Require(std::string_view directory) const {
  if (directory.empty()) return;
  std::error_code error;
  bool same = false;
  try {
    same = std::filesystem::equivalent(NativePath(directory), path_, error);
  } catch (const RuntimeError&) {  // no path at all
  }
  if (error || !same) throw ServerError("'" + Printable(directory) + "' is not the blob directory of this server");
}

std::string BlobDirectory::NameOf(std::string_view path) const {
  const std::string_view name = LastPathPart(path);
  std::string_view directory = path.substr(0, path.size() - name.size());
  if (!directory.empty()) directory.remove_suffix(1);
  Require(directory);
  return std::string(name);
}

ReadableFile BlobDirectory::Open(std::string_view name) const {
  Descriptor file(openat(descriptor_.get(), NativeName(name).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    throw ServerError("There is no file '" + Printable(name) + "' in the blob directory");
  }
  return {std::move(file), status.st_size};
}

std::unique_ptr<PendingFile> BlobDirectory::Create(std::string_view name) const {
  NativeName(name);  // refuses early what could not be committed
  return std::make_unique<PendingFile>(descriptor_.get(), std::string(name));
}

std::string CommitAndTell(PendingFile& file) {
  const std::int64_t byteCount = file.CommitUnderFreeName();
  return std::to_string(byteCount) + "\r\n" + file.name() + "\r\n";
}

}  // namespace oxaqrycln::devserver
