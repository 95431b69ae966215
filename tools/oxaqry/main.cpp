#include <cstdlib>
#include <iostream>

#include "tools/oxaqry/command_line.h"
#include "tools/oxaqry/interruption.h"
#include "tools/oxaqry/terminal.h"

int main(int argumentCount, char** arguments) {
  std::ios::sync_with_stdio(false);
  oxaqrycln::TakeFileLimitsAsErrors();
  const auto environment = [](const char* name) -> const char* { return std::getenv(name); };
  return oxaqrycln::RunCommandLine({arguments + 1, arguments + argumentCount},
                                   {std::cin, std::cout, std::cerr, environment, oxaqrycln::StandardTerminals()});
}
