#include <cstdlib>
#include <iostream>

#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/command_line.h"

int main(int argumentCount, char** arguments) {
  std::ios::sync_with_stdio(false);
  oxaqrycln::oxaqry::TakeFileLimitsAsErrors();
  const auto environment = [](const char* name) -> const char* { return std::getenv(name); };
  return oxaqrycln::oxaqry::RunCommandLine(
      {arguments + 1, arguments + argumentCount},
      {std::cin, std::cout, std::cerr, environment, oxaqrycln::oxaqry::StandardTerminals()});
}
