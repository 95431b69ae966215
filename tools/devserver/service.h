// service.h - from a request text to its answer: accounts, dispatch, status line.
// Knows nothing of sockets.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_SERVICE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_SERVICE_H_

#include <map>
#include <string>
#include <string_view>

#include "tools/devserver/database.h"

namespace oxaqrycln::devserver {

// User names and passwords in the clear, both in Windows-1252.
using Accounts = std::map<std::string, std::string>;

class Service {
 public:
  Service(Database database, Accounts accounts);

  // The answer to a request text, without the header line: the status line and, on success, the data lines. Whatever
  // the text holds, there is an answer.
  std::string Answer(std::string_view request) noexcept;

 private:
  std::string Dispatch(std::string_view request);

  Database database_;
  Accounts encoded_;
};

std::string ErrorAnswer(std::string_view text);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_SERVICE_H_
