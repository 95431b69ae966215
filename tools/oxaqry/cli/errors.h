// errors.h - why a command cannot do its work. Texts are UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_ERRORS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_ERRORS_H_

#include <stdexcept>

namespace oxaqrycln::oxaqry {

// Something that a command cannot do, with what to do about it; UTF-8.
class CommandError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Arguments that do not fit together; the exit status is 2.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What is wrong with a value or a line, for the one who wrote it.
class ValueError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_ERRORS_H_
