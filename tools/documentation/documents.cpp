#include "tools/documentation/documents.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <string_view>

namespace oxaqrycln::documentation {

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<const CLI::Option*> OptionsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return !option->get_positional(); });
}

std::vector<const CLI::Option*> ArgumentsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

std::string ChoicesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t open = type.find('{');
  return open == std::string::npos ? "" : Replaced(type.substr(open + 1, type.find('}') - open - 1), ",", " ");
}

std::string Joined(const std::vector<std::string>& words, const std::string& separator) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
  return text;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string Roff(const std::string& text) { return Replaced(Replaced(text, "\\", "\\e"), "-", "\\-"); }

void WriteOptionList(const std::vector<const CLI::Option*>& options, std::ostream& out) {
  for (const CLI::Option* const option : options) {
    const bool isFlag = option->get_expected_max() == 0;
    std::string heading;
    for (const std::string& name : NamesOf(*option)) {
      heading += (heading.empty() ? "" : "\\fR, \\fB") + Roff(name);
      if (!isFlag) heading += "\\fR \\fI" + Roff(option->get_type_name());
    }
    out << ".TP\n\\fB" << heading << "\\fR\n" << Roff(option->get_description());
    if (const std::string preset = option->get_default_str(); !preset.empty()) out << "; default " << Roff(preset);
    out << '\n';
  }
}

int WriteDocument(int argumentCount, const char* const* arguments, const CLI::App& app,
                  const ManualPageWriter& writeManualPage) {
  const std::string program = app.get_name() + "_documents: ";
  const std::string_view kind = argumentCount > 1 ? arguments[1] : "";
  try {
    if (kind == "bash") {
      WriteBashCompletion(app, std::cout);
    } else if (kind == "zsh") {
      WriteZshCompletion(app, std::cout);
    } else if (kind == "man" && argumentCount > 2) {
      std::ifstream page(arguments[2]);
      writeManualPage(app, page, std::cout);
    } else {
      std::cerr << program << "give bash, zsh, or man and a template\n";
      return 2;
    }
  } catch (const std::exception& error) {
    std::cerr << program << error.what() << '\n';
    return 1;
  }
  return std::cout.flush() ? 0 : 1;
}

}  // namespace oxaqrycln::documentation
