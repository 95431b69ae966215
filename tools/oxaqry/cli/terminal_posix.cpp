#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/terminal_encoding.h"

namespace oxaqrycln::oxaqry {

Terminals StandardTerminals() noexcept {
  return {.in = isatty(STDIN_FILENO) == 1, .out = isatty(STDOUT_FILENO) == 1, .err = isatty(STDERR_FILENO) == 1};
}

std::size_t TerminalColumns(const Output& output) noexcept {
  winsize size{};
  return output.terminals.out && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void PrepareStandardStreams() {
  const std::string encoding = LocaleEncoding();
  if (encoding.empty()) return;
  if (isatty(STDOUT_FILENO) == 1) static const EncodedStream out(std::cout, encoding);
  if (isatty(STDERR_FILENO) == 1) static const EncodedStream err(std::cerr, encoding);
}

std::vector<std::string> ProgramArguments(int count, char** arguments) { return {arguments + 1, arguments + count}; }

const char* EnvironmentVariable(const char* name) { return std::getenv(name); }

}  // namespace oxaqrycln::oxaqry
