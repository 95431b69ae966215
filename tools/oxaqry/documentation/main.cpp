// oxaqry_documents bash|zsh|man [TEMPLATE]: writes a completion, or the manual page of a template, to standard output.
#include <iostream>

#include "tools/documentation/documents.h"
#include "tools/oxaqry/command_line.h"
#include "tools/oxaqry/documentation/manual_page.h"

int main(int argumentCount, char** arguments) {
  using namespace oxaqrycln;
  oxaqry::CommandParser parser({std::cin, std::cout, std::cerr, [](const char*) -> const char* { return nullptr; }});
  oxaqry::AddAllCommands(parser);
  return documentation::WriteDocument(argumentCount, arguments, parser.app(), oxaqry::WriteManualPage);
}
