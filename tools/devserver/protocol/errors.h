// errors.h - the one exception type of the development server.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ERRORS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ERRORS_H_

#include <stdexcept>

namespace oxaqrycln::devserver {

// A request that cannot be carried out, or a server that cannot start. Its text becomes
// the status line of the answer or the error message of the program.
class ServerError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_ERRORS_H_
