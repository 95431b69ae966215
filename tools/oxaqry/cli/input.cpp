#include "tools/oxaqry/cli/input.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "tools/oxaqry/cli/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;

// Everything of the stream; name says what it is in an error.
std::string ReadStream(std::istream& in, std::size_t mostMebibytes, const std::string& name) {
  std::string text;
  std::string piece(kMebibyte, '\0');
  while (in.read(piece.data(), static_cast<std::streamsize>(piece.size())) || in.gcount() > 0) {
    text.append(piece, 0, static_cast<std::size_t>(in.gcount()));
    if (text.size() > mostMebibytes * kMebibyte) {
      throw CommandError(name + " is larger than " + std::to_string(mostMebibytes) + " MiB");
    }
  }
  return text;
}

std::string ReadFile(const std::string& path, std::size_t mostMebibytes, const std::string& name) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  std::string text = ReadStream(file, mostMebibytes, name);
  if (!file.is_open() || file.bad()) {
    throw CommandError("cannot read " + name + ": check that it exists and is a readable file");
  }
  return text;
}

}  // namespace

std::string ReadAll(const std::string& path, std::istream& in) {
  constexpr std::size_t kMostMebibytes = 64;
  const std::string name = "\"" + path + "\"";
  return path == "-" ? ReadStream(in, kMostMebibytes, "the input") : ReadFile(path, kMostMebibytes, name);
}

std::string ReadSmallFile(const std::string& path, const std::string& what) {
  return ReadFile(path, 1, "the " + what + " \"" + path + "\"");
}

std::string ReadFirstLine(const std::string& path, const std::string& what) {
  std::string text = ReadSmallFile(path, what);
  text.resize(std::min(text.size(), text.find('\n')));
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

void Confirm(const std::string& question, bool yes, const Output& output) {
  if (yes) return;
  if (!output.terminals.in) throw UsageError("there is no terminal to ask on: give --yes to go on without a question");
  output.err << question << " [y/N] " << std::flush;
  std::string answer;
  std::getline(output.in, answer);
  if (answer != "y" && answer != "Y" && answer != "yes") throw CommandError("nothing was changed");
}

}  // namespace oxaqrycln::oxaqry
