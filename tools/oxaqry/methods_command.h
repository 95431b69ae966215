// methods_command.h - the command "methods": the public variables and methods, from the method table.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_METHODS_COMMAND_H_
#define OXAQRYCLN_TOOLS_OXAQRY_METHODS_COMMAND_H_

#include "tools/oxaqry/commands.h"

namespace oxaqrycln {

// A list for people, or one JSON document; with isMarkdown the method reference as docs/methods.md holds it.
int Methods(bool isMarkdown, const Output& output);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_METHODS_COMMAND_H_
