// devserver_documents bash|zsh|man [TEMPLATE]: writes a completion, or the manual page of a template, to standard
// output.
#include <istream>
#include <ostream>
#include <string>

#include "tools/devserver/command_line.h"
#include "tools/documentation/documents.h"

namespace {

// Copies the template and replaces the line "@OPTIONS" by a list of the options.
void WriteManualPage(const CLI::App& app, std::istream& page, std::ostream& out) {
  for (std::string line; std::getline(page, line);) {
    if (line == "@OPTIONS") {
      oxaqrycln::documentation::WriteOptionList(oxaqrycln::documentation::OptionsOf(app), out);
    } else {
      out << line << '\n';
    }
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  CLI::App app("", "devserver");
  oxaqrycln::devserver::CommandLine line;
  oxaqrycln::devserver::AddOptions(app, line);
  return oxaqrycln::documentation::WriteDocument(argumentCount, arguments, app, WriteManualPage);
}
