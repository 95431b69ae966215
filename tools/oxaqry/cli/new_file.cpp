#include "tools/oxaqry/cli/new_file.h"

#include <fstream>
#include <random>
#include <vector>

#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPieceSize = std::size_t{1} << 20;

// Only its owner can read it.
fs::path MakeDirectoryIn(const fs::path& parent) {
  std::random_device random;
  std::error_code failed;
  for (int attempt = 0; attempt < 100; ++attempt) {
    fs::path directory = parent / (".oxaqry-" + std::to_string(random()));
    if (!fs::create_directory(directory, failed) && !failed) continue;
    if (!failed) fs::permissions(directory, fs::perms::owner_all, failed);
    if (!failed) return directory;
    break;
  }
  throw CommandError("cannot write into \"" + parent.string() + "\": " + failed.message());
}

}  // namespace

void CheckTarget(const fs::path& target, bool overwrite) {
  std::error_code ignored;
  const fs::file_status status = fs::symlink_status(target, ignored);
  if (!fs::exists(status)) return;
  if (fs::is_directory(target, ignored)) {
    throw CommandError("\"" + target.string() + "\" is a directory: name a file");
  }
  if (!fs::is_regular_file(status) && !fs::is_symlink(status)) {
    throw CommandError("\"" + target.string() + "\" is not a file that can be replaced");
  }
  if (!overwrite) {
    throw CommandError("\"" + target.string() + "\" exists: give --force to overwrite it, or name another file");
  }
}

NewFile::NewFile(fs::path target, bool overwrite, const std::string& name)
    : target_(std::move(target)), overwrite_(overwrite) {
  CheckTarget(target_, overwrite_);
  directory_ = MakeDirectoryIn(target_.has_parent_path() ? target_.parent_path() : fs::path("."));
  part_ = directory_ / (name.empty() ? target_.filename() : fs::path(name));
}

NewFile::~NewFile() {
  std::error_code ignored;
  fs::remove_all(directory_, ignored);
}

void NewFile::CopyFrom(const fs::path& source, const std::function<void(std::int64_t)>& onPiece) const {
  std::ifstream in(source, std::ios::binary);
  if (!in) throw CommandError("cannot read \"" + source.string() + "\"");
  std::ofstream out(part_, std::ios::binary);
  std::vector<char> piece(kPieceSize);
  std::int64_t copied = 0;
  while (in.read(piece.data(), static_cast<std::streamsize>(piece.size())) || in.gcount() > 0) {
    out.write(piece.data(), in.gcount());
    copied += in.gcount();
    if (!out) break;
    onPiece(copied);
  }
  if (in.bad()) throw CommandError("cannot read \"" + source.string() + "\" to its end");
  out.close();
  if (!out) throw CommandError("cannot write \"" + target_.string() + "\": is the disk full?");
}

void NewFile::Commit() {
  std::error_code failed;
  if (!overwrite_) {
    // A hard link never replaces a file, but not every file system has them.
    fs::create_hard_link(part_, target_, failed);
    if (!failed) return;
    CheckTarget(target_, false);
  }
  fs::rename(part_, target_, failed);
  if (failed) throw CommandError("cannot write \"" + target_.string() + "\": " + failed.message());
}

TemporaryFile::~TemporaryFile() {
  std::error_code ignored;
  if (!path_.empty()) fs::remove(path_, ignored);
}

}  // namespace oxaqrycln::oxaqry
