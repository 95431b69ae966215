#include "platform/replacement_file.h"

#include <random>

#include "platform/errors.h"

namespace oxaqrycln {
namespace {

// A name that nobody else uses; short, because the target's own name may be as long as a name can be.
std::string NameBeside(std::string_view target) {
  static constexpr std::string_view kDigits = "0123456789abcdef";
  const std::string_view directory = target.substr(0, target.size() - LastPathPart(target).size());
  std::random_device random;
  std::string name = std::string(directory) + ".oxaqrycln-";
  for (int i = 0; i < 16; ++i) name += kDigits[random() % kDigits.size()];
  return name + ".part";
}

}  // namespace

ReplacementFile::ReplacementFile(std::string_view target) : target_(target) {
  constexpr int kMostTries = 100;
  for (int tries = 1; file_ == nullptr; ++tries) {
    temporary_ = NameBeside(target);
    try {
      file_ = std::make_unique<OutputFile>(temporary_, OutputFile::Existing::Refused);
    } catch (const RuntimeError& why) {
      if (why.number() != error::kFileAlreadyExists || tries == kMostTries) throw;
    }
  }
}

ReplacementFile::~ReplacementFile() {
  if (temporary_.empty()) return;
  file_.reset();
  try {
    DeleteFile(temporary_);
  } catch (...) {  // somebody else has deleted it
  }
}

void ReplacementFile::Commit() {
  file_->Close();
  RenameFile(temporary_, target_);
  temporary_.clear();
}

}  // namespace oxaqrycln
