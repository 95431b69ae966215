#include "platform/files/replacement_file.h"

#include <random>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

std::string_view DirectoryOf(std::string_view target) noexcept {
  return target.substr(0, target.size() - LastPathPart(target).size());
}

// Calls use(name) with names beside the target until one is not taken, and returns that one. The names are short,
// because the target's own may be as long as a name can be.
template <typename Use>
std::string UseFreeName(std::string_view target, Use&& use) {
  static constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr int kMostTries = 100;
  std::random_device random;
  for (int tries = 1;; ++tries) {
    std::string name = std::string(DirectoryOf(target)) + ".oxaqrycln-";
    for (int i = 0; i < 16; ++i) name += kDigits[random() % kDigits.size()];
    name += ".part";
    try {
      use(name);
      return name;
    } catch (const RuntimeError& why) {
      if (why.number() != error::kFileAlreadyExists || tries == kMostTries) throw;
    }
  }
}

}  // namespace

ReplacementFile::ReplacementFile(std::string_view target)
    : target_(target), file_(OutputFile::MakeUnnamed(DirectoryOf(target))) {
  if (file_ != nullptr) return;
  temporary_ = UseFreeName(target_, [&](const std::string& name) {
    file_ = std::make_unique<OutputFile>(name, OutputFile::Existing::Refused);
  });
}

ReplacementFile::~ReplacementFile() {
  if (temporary_.empty()) return;
  file_.reset();
  try {
    RemoveFile(temporary_);
  } catch (...) {  // it has been deleted by another program
  }
}

// An unnamed file cannot replace another one directly, so it first gets a name beside the target.
void ReplacementFile::Commit() {
  if (temporary_.empty()) temporary_ = UseFreeName(target_, [&](const std::string& name) { file_->LinkAs(name); });
  file_->Close();
  RenameFile(temporary_, target_);
  temporary_.clear();
}

}  // namespace oxaqrycln
