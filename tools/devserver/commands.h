// commands.h - the table of the commands that the server knows, with what each takes and who answers it.
// A further command is one more row in commands.cpp and its handler.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_H_

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "tools/devserver/database.h"

namespace oxaqrycln::devserver {

// The parameters behind the command word, exactly as many as the command takes.
using Parameters = std::span<const std::string>;

struct Command {
  std::string_view name;
  std::size_t parameterCount;
  // The data lines of the answer, each with its CR LF. Raises ServerError for a request that cannot be carried out.
  std::string (*handler)(Database& database, Parameters parameters);
};

// The command of that name, whatever its letter case; nullptr when there is none.
const Command* FindCommand(std::string_view name);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_H_
