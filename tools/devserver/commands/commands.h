// commands.h - the table of the commands that the server knows, with what each takes and who answers it.
// A further command is one more row in commands.cpp and its handler.
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

// The parameters behind the command word, exactly as many as the command takes.
using Parameters = std::span<const std::string>;

// One request on its way to its handler.
struct Call {
  Database& database;
  const BlobDirectory& blobs;
  const std::string& user;
  Parameters parameters;
};

struct Command {
  std::string_view name;
  CommandShape shape;
  // The data lines of the answer, each with its CR LF; or a reply of another kind. Raises ServerError for a request
  // that cannot be carried out.
  Reply (*handler)(const Call& call);
};

// The command of that name, whatever its letter case; nullptr when there is none.
const Command* FindCommand(std::string_view name);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_COMMANDS_H_
