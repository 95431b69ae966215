#include "tools/oxaqry/documentation/manual_page.h"

#include <istream>
#include <map>
#include <ostream>
#include <set>
#include <stdexcept>

#include "tools/documentation/documents.h"
#include "tools/oxaqry/cli/command_parser.h"

namespace oxaqrycln::oxaqry {
namespace {

using namespace documentation;

using Commands = std::map<std::string, const CLI::App*>;

// The commands that are no groups, by their words.
void Collect(const CLI::App& app, const std::string& prefix, Commands& commands) {
  for (const CLI::App* const each : CommandsOf(app)) {
    const std::string name = prefix + each->get_name();
    if (CommandsOf(*each).empty()) commands.emplace(name, each);
    Collect(*each, name + " ", commands);
  }
}

std::vector<const CLI::Option*> OwnOptionsOf(const CLI::App& command) {
  std::vector<const CLI::Option*> own = OptionsOf(command);
  std::erase_if(own, [](const CLI::Option* option) {
    const std::string name = option->get_lnames().front();
    return option->get_group() == kSettingsGroup || name == "help" || name == "json";
  });
  return own;
}

void WriteHeading(const CLI::App& command, const std::string& name, std::ostream& out) {
  std::string arguments;
  for (const CLI::Option* const argument : ArgumentsOf(command)) {
    const std::string text = argument->get_name() + (argument->get_expected_max() > 1 ? "\\fR...\\fI" : "");
    arguments += argument->get_required() ? " " + text : " \\fR[\\fI" + text + "\\fR]\\fI";
  }
  out << ".TP\n.BI \"" << Roff(name) << "\" \"" << arguments << "\"\n";
}

void WriteOptions(const CLI::App& command, std::ostream& out) {
  out << "Options:\n.RS\n";
  WriteOptionList(OwnOptionsOf(command), out);
  out << ".RE\n";
}

void WriteSettings(std::ostream& out) {
  for (const SettingEntry& entry : SettingEntries()) {
    const std::string source = std::string(entry.environment) + " (" + entry.variable + ")";
    const bool hasOption = entry.option[0] != '\0';
    const std::string option = "\\fB" + Roff(entry.option) + "\\fR \\fI" + entry.argument + "\\fR, ";
    out << ".TP\n" << (hasOption ? option : "") << source << '\n' << Roff(entry.meaning) << '\n';
  }
}

}  // namespace

void WriteManualPage(const CLI::App& app, std::istream& page, std::ostream& out) {
  Commands commands;
  Collect(app, "", commands);
  std::set<std::string> missing;
  for (const auto& [name, command] : commands) {
    missing.insert("@COMMAND " + name);
    if (!OwnOptionsOf(*command).empty()) missing.insert("@OPTIONS " + name);
  }
  for (std::string line; std::getline(page, line);) {
    if (line == "@SETTINGS") {
      WriteSettings(out);
    } else if (line.starts_with('@')) {
      const std::string name = line.substr(std::min(line.find(' '), line.size() - 1) + 1);
      if (missing.erase(line) == 0)
        throw std::runtime_error("the manual page has \"" + line + "\" twice, or without such a command");
      line.starts_with("@COMMAND") ? WriteHeading(*commands.at(name), name, out)
                                   : WriteOptions(*commands.at(name), out);
    } else {
      out << line << '\n';
    }
  }
  if (!missing.empty()) throw std::runtime_error("the manual page has no \"" + *missing.begin() + "\"");
}

}  // namespace oxaqrycln::oxaqry
