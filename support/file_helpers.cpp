#include "support/file_helpers.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "platform/files/files.h"
#include "values/code_page.h"
#include "values/errors.h"
#include "values/wildcard.h"

namespace oxaqrycln {
namespace {

// A directory that cannot be listed has no match.
std::vector<std::string> MatchingFiles(const std::string& directory, std::string_view pattern) {
  std::vector<std::string> names;
  try {
    for (auto& entry : ListDirectory(directory)) {
      if (!entry.isDirectory && MatchesWildcard(pattern, entry.name)) names.push_back(std::move(entry.name));
    }
  } catch (const RuntimeError&) {
    names.clear();
  }
  return names;
}

void DeleteFiles(const std::string& directory, std::string_view pattern) {
  for (const std::string& name : MatchingFiles(directory, pattern)) RemoveFile(directory + name);
}

}  // namespace

std::string ChangeFileExt(std::string_view name, std::string_view rules) {
  if (rules.empty()) return std::string(name);
  const std::size_t dot = name.rfind('.');
  const std::string rule = UpperCase(dot == std::string_view::npos ? name : name.substr(dot + 1)) + "-";
  const std::size_t found = UpperCase(rules).find(rule);
  if (found == std::string::npos) return std::string(name);
  const std::size_t start = found + rule.size();
  const std::string_view extension = rules.substr(start, rules.find(',', start) - start);
  // Kept: three characters are cut whatever the length of the old extension; callers rely on three-letter extensions.
  std::string renamed(name.substr(0, name.size() < 3 ? 0 : name.size() - 3));
  renamed += extension;
  try {
    RenameFile(name, renamed);
  } catch (const RuntimeError&) {  // the new name is reported all the same
  }
  return renamed;
}

void DeleteMatchingFiles(std::string_view pattern) {
  if (pattern.empty()) throw RuntimeError(error::kBadFileName);
  const std::string_view last = LastPathPart(pattern);
  const std::string directory(pattern.substr(0, pattern.size() - last.size()));
  DeleteFiles(directory, last);
  std::vector<std::string> subdirectories;
  for (auto& entry : ListDirectory(directory)) {
    if (entry.isDirectory) subdirectories.push_back(std::move(entry.name));
  }
  for (const std::string& each : subdirectories) {
    DeleteFiles(directory + each + "\\", "*");
    RemoveEmptyDirectory(directory + each);
  }
}

}  // namespace oxaqrycln
