// file_size_limit.h - lets every file of this process end after so many bytes, as on a disk that is full.
#ifndef OXAQRYCLN_TESTS_SUPPORT_FILE_SIZE_LIMIT_H_
#define OXAQRYCLN_TESTS_SUPPORT_FILE_SIZE_LIMIT_H_

#include <sys/resource.h>

#include <csignal>

namespace oxaqrycln::testing {

class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t byteCount) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{byteCount, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit former_{};
  void (*handler_)(int);
};

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_FILE_SIZE_LIMIT_H_
