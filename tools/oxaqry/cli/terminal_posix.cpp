#include <unistd.h>

#include <cstdlib>

#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

Terminals StandardTerminals() noexcept {
  return {.in = isatty(STDIN_FILENO) == 1, .out = isatty(STDOUT_FILENO) == 1, .err = isatty(STDERR_FILENO) == 1};
}

void PrepareStandardStreams() {}

std::vector<std::string> ProgramArguments(int count, char** arguments) { return {arguments + 1, arguments + count}; }

const char* EnvironmentVariable(const char* name) { return std::getenv(name); }

}  // namespace oxaqrycln::oxaqry
