// Runs a fuzz target once over each stored input: replay PATH..., where a directory means all of its files.
// Fails if there is no input; a claim that does not hold ends the program.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "fuzz/input.h"

namespace {

int Replay(const std::filesystem::path& path) {
  if (std::filesystem::is_directory(path)) {
    // In the order of their names: a target may keep state from one input to the next.
    const std::set<std::filesystem::path> files(std::filesystem::directory_iterator(path), {});
    int count = 0;
    for (const auto& file : files) count += Replay(file);
    return count;
  }
  std::fprintf(stderr, "%s\n", path.c_str());  // the last one named is the one that failed
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) return 0;
  oxaqrycln::fuzz::Run(bytes);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) count += Replay(argv[i]);
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
