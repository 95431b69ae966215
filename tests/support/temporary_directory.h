// temporary_directory.h - a directory of its own for a test, gone with it.
#ifndef OXAQRYCLN_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_
#define OXAQRYCLN_TESTS_SUPPORT_TEMPORARY_DIRECTORY_H_

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace oxaqrycln::testing {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string path = (std::filesystem::temp_directory_path() / ("oxaqrycln-" + std::string(6, 'X'))).string();
    if (mkdtemp(path.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path_ = path;
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
