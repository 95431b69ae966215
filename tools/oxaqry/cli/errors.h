// errors.h - why a command cannot do its work. Texts are UTF-8 and say what to do about it.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_ERRORS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_ERRORS_H_

#include <stdexcept>

namespace oxaqrycln::oxaqry {

// The exit status is 1.
class CommandError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Arguments that do not fit together. The exit status is 2.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A value or a line of input that is wrong.
class ValueError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_ERRORS_H_
