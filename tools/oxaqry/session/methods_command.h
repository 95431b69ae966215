// methods_command.h - the command "methods": the public variables and methods, from the method table.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SESSION_METHODS_COMMAND_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SESSION_METHODS_COMMAND_H_

#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

// A list for people, or one JSON document.
int Methods(const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SESSION_METHODS_COMMAND_H_
