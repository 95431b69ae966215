// terminal.h - which of the standard streams are terminals.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_TERMINAL_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_TERMINAL_H_

#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

Terminals StandardTerminals() noexcept;

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_TERMINAL_H_
