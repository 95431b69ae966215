// temporary_directory.h - a directory of its own for a test, gone with it.
#ifndef OXAQRYCLN_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_
#define OXAQRYCLN_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

namespace oxaqrycln::testing {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    namespace fs = std::filesystem;
    std::random_device random;
    fs::path path;
    int tries = 100;
    do {  // until the name is not taken
      if (tries-- == 0) throw std::runtime_error("no temporary directory");
      path = fs::temp_directory_path() / ("oxaqrycln-" + std::to_string(random()));
    } while (!fs::create_directory(path));
    fs::permissions(path, fs::perms::owner_all);
    path_ = path.string();
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& path() const noexcept { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }
  bool Has(const std::string& name) const { return std::filesystem::exists(File(name)); }
  std::size_t CountEntries() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator()));
  }
  // The bytes of a file; "" when there is none.
  std::string Read(const std::string& name) const {
    std::ifstream file(File(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(File(name), std::ios::binary) << content;
  }

 private:
  std::string path_;
};

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_
