// commands.h - the table of the server's commands: the parameters of each and the function that carries it out.
// A new command is a row of the table in commands.cpp and its function.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_COMMANDS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_COMMANDS_H_

#include <span>
#include <string>
#include <string_view>

#include "tools/devserver/archive/database.h"
#include "tools/devserver/commands/reply.h"
#include "tools/devserver/content/blob_directory.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {

// One request, as its handler sees it.
struct Call {
  Database& database;
  const BlobDirectory& blobs;
  const std::string& user;
  std::span<const std::string> parameters;  // after the command word, exactly as many as the command takes
};

struct Command {
  std::string_view name;
  CommandShape shape;
  // The data lines of the answer, each with its CR LF; or a reply of another kind. Raises ServerError for a request
  // that cannot be carried out.
  Reply (*handler)(const Call& call);
};

// The command of that name in any letter case; nullptr when there is none.
const Command* FindCommand(std::string_view name);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_COMMANDS_H_
