#include <iostream>

#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/command_line.h"

int main(int argumentCount, char** arguments) {
  namespace tool = oxaqrycln::oxaqry;
  std::ios::sync_with_stdio(false);
  tool::PrepareStandardStreams();
  tool::TakeFileLimitsAsErrors();
  return tool::RunCommandLine(tool::ProgramArguments(argumentCount, arguments),
                              {std::cin, std::cout, std::cerr, tool::EnvironmentVariable, tool::StandardTerminals()});
}
