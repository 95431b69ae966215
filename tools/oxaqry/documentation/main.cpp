// oxaqry_documents bash|zsh|man [TEMPLATE]: writes a completion, or the manual page of a template, to standard output.
#include <fstream>
#include <iostream>
#include <string_view>

#include "tools/oxaqry/command_line.h"
#include "tools/oxaqry/documentation/documents.h"

int main(int argumentCount, char** arguments) {
  using namespace oxaqrycln::oxaqry;
  const std::string_view kind = argumentCount > 1 ? arguments[1] : "";
  CommandParser parser({std::cin, std::cout, std::cerr, [](const char*) -> const char* { return nullptr; }});
  AddAllCommands(parser);
  try {
    if (kind == "bash") {
      WriteBashCompletion(parser.app(), std::cout);
    } else if (kind == "zsh") {
      WriteZshCompletion(parser.app(), std::cout);
    } else if (kind == "man" && argumentCount > 2) {
      std::ifstream page(arguments[2]);
      WriteManualPage(parser.app(), page, std::cout);
    } else {
      std::cerr << "oxaqry_documents: give bash, zsh, or man and a template\n";
      return 2;
    }
  } catch (const std::exception& error) {
    std::cerr << "oxaqry_documents: " << error.what() << '\n';
    return 1;
  }
  return std::cout.flush() ? 0 : 1;
}
