// command_line.h - the options of devserver.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMAND_LINE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMAND_LINE_H_

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "tools/devserver/archive/sample_archive.h"
#include "tools/devserver/server/server.h"
#include "tools/devserver/server/service.h"

namespace oxaqrycln::devserver {

struct CommandLine {
  ServerOptions server;
  std::string database;
  std::string blobDirectory;
  int documentCount = kSampleDocumentCount;
  Accounts accounts;
  bool log = false;
};

// Adds the options to the parser, which writes to the line.
void AddOptions(CLI::App& app, CommandLine& line);
// Parses the arguments; the exit status when the program is to end at once, 0 for --help and --version, 2 for wrong
// usage, which standard error explains.
std::optional<int> Parse(CLI::App& app, int argumentCount, const char* const* arguments);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMAND_LINE_H_
