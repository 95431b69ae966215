#include "tools/oxaqry/cli/input.h"

#include <algorithm>
#include <fstream>
#include <iostream>

#include "tools/oxaqry/cli/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::size_t kMaxFileBytes = std::size_t{1} << 20;
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

}  // namespace

std::string ReadAll(const std::string& path, std::istream& in) {
  std::ifstream file;
  if (path != "-") file.open(path, std::ios::binary);
  std::istream& source = path == "-" ? in : file;
  std::string text(std::size_t{1} << 20, '\0');
  std::size_t size = 0;
  while (source.read(text.data() + size, static_cast<std::streamsize>(text.size() - size)) || source.gcount() > 0) {
    size += static_cast<std::size_t>(source.gcount());
    if (size > kMostBytes) throw CommandError("\"" + path + "\" is larger than 64 MiB");
    if (size == text.size()) text.resize(2 * size);
  }
  if (path != "-" && (!file.is_open() || file.bad())) {
    throw CommandError("cannot read \"" + path + "\": check that it exists and is a readable file");
  }
  text.resize(size);
  return text;
}

void Confirm(const std::string& question, bool yes, const Output& output) {
  if (yes) return;
  if (!output.terminals.in) throw UsageError("there is no terminal to ask on: give --yes to delete without a question");
  output.err << question << " [y/N] " << std::flush;
  std::string answer;
  std::getline(output.in, answer);
  if (answer != "y" && answer != "Y" && answer != "yes") throw CommandError("nothing was deleted");
}

std::string ReadSmallFile(const std::string& path, const std::string& what) {
  std::ifstream file(path, std::ios::binary);
  std::string text(kMaxFileBytes + 1, '\0');
  if (file) file.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (file.bad() || !file.is_open() || (file.fail() && !file.eof())) {
    throw CommandError("cannot read the " + what + " \"" + path + "\": check that it exists and is readable");
  }
  text.resize(static_cast<std::size_t>(file.gcount()));
  if (text.size() > kMaxFileBytes) throw CommandError("the " + what + " \"" + path + "\" is larger than 1 MiB");
  return text;
}

std::string ReadFirstLine(const std::string& path, const std::string& what) {
  std::string text = ReadSmallFile(path, what);
  text.resize(std::min(text.size(), text.find('\n')));
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace oxaqrycln::oxaqry
