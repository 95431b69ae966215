// server_commands.h - the commands on the query servers themselves, and on the blob directory.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SERVERS_SERVER_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SERVERS_SERVER_COMMANDS_H_

#include <string>

#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {

int Live(const Settings& settings, const Output& output);
int Direct(const Settings& settings, const std::string& text, const Output& output);
// One check of each server; 1 when a server did not answer.
int Servers(const Settings& settings, const Output& output);
int WriteTest(const Settings& settings, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SERVERS_SERVER_COMMANDS_H_
