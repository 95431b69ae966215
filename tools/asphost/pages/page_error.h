// page_error.h - an error in the source of a page, before its script runs.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_ERROR_H_
#define OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_ERROR_H_

#include <stdexcept>
#include <string>

namespace oxaqrycln::asphost {

class PageError : public std::runtime_error {
 public:
  // A line of 0 means the file as a whole.
  PageError(std::string file, int line, const std::string& what)
      : std::runtime_error(what), file_(std::move(file)), line_(line) {}

  const std::string& file() const noexcept { return file_; }
  int line() const noexcept { return line_; }

 private:
  std::string file_;
  int line_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_PAGES_PAGE_ERROR_H_
