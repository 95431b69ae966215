// service.h - answers a request text: checks the account, runs the command, adds the status line.
// Knows nothing of sockets.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_SERVER_SERVICE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_SERVER_SERVICE_H_

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/devserver/archive/database.h"
#include "tools/devserver/commands/reply.h"
#include "tools/devserver/content/blob_directory.h"

namespace oxaqrycln::devserver {

// Passwords by user name, unencoded; both in Windows-1252.
using Accounts = std::map<std::string, std::string>;

class Service {
 public:
  Service(Database database, Accounts accounts, BlobDirectory blobs = BlobDirectory::Private());

  // The reply to any text; its answer is the status line and, on success, the data lines, without the header line. The
  // reply must not outlive the service.
  Reply Answer(std::string_view request) noexcept;

  const BlobDirectory& blobs() const noexcept { return blobs_; }

 private:
  Reply Dispatch(const std::vector<std::string>& fields);

  Database database_;
  Accounts encoded_;
  BlobDirectory blobs_;
};

std::string ErrorAnswer(std::string_view text);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_SERVER_SERVICE_H_
