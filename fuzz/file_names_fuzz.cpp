// Names of files that come from outside. Input: the name.
#include <filesystem>

#include "archive/stored_name.h"
#include "fuzz/input.h"
#include "platform/files/files.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

void CheckPlainName(std::string_view name) {
  const bool noControl = std::ranges::none_of(name, [](char c) { return static_cast<unsigned char>(c) < 0x20; });
  Require(noControl && name.find_first_of("/\\:\x7F") == std::string_view::npos,
          "a plain name consists of plain characters");
  Require(!name.empty() && name.size() <= 255, "a plain name fits into a directory");
  Require(!name.ends_with('.') && !name.ends_with(' '), "a plain name has no end that a file system removes");
  const std::filesystem::path directory("/blobs/web");
  const auto path = (directory / NativePath(name)).lexically_normal();
  Require(path.parent_path() == directory && path.has_filename(), "a plain name stays in its directory");
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view name) {
  if (IsPlainFileName(name)) CheckPlainName(name);
  const std::string_view last = LastPathPart(name);
  Require(name.ends_with(last) && last.find_first_of("/\\") == std::string_view::npos,
          "the last part has no separator");
  std::string stored;
  const std::int32_t refused = ErrorOf([&] { stored = StoredName(name); });
  Require(refused == (IsPlainFileName(last) ? 0 : error::kBadFileName), "only a plain last part is stored");
  if (refused == 0) {
    Require(stored == last, "a file is stored under its last part");
    CheckPlainName(stored);
  }
}
