#include "tools/oxaqry/cli/parse_failure.h"

#include <algorithm>

#include "tools/oxaqry/cli/suggestion.h"

namespace oxaqrycln::oxaqry {
namespace {

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// With the value that "--option=VALUE" has in the same word left out.
std::string UnknownOptionText(const CLI::App& command, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  std::vector<std::string> known;
  for (const CLI::Option* const option : command.get_options({})) {
    for (const std::string& each : option->get_lnames()) known.push_back("--" + each);
  }
  return "unknown option " + Quoted(name) + DidYouMean(name, known);
}

std::string CommandListText(const CLI::App& group, const std::string& words) {
  std::string text = (words.empty() ? "oxaqry" : Quoted(words)) + " needs one of these commands:";
  std::size_t width = 0;
  for (const std::string& name : CommandNames(group)) width = std::max(width, name.size());
  for (const CLI::App* const each : group.get_subcommands([](const CLI::App*) { return true; })) {
    const std::string& name = each->get_name();
    text += "\n  " + name + std::string(width - name.size() + 2, ' ') + each->get_description();
  }
  return text;
}

}  // namespace

std::vector<std::string> CommandNames(const CLI::App& group) {
  std::vector<std::string> names;
  for (const CLI::App* const each : group.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(each->get_name());
  }
  return names;
}

std::string UnknownCommandText(const CLI::App& group, const std::string& words, const std::string& name) {
  const std::string full = words.empty() ? name : words + " " + name;
  return "unknown command " + Quoted(full) + DidYouMean(name, CommandNames(group));
}

std::string ParseFailureText(const CLI::App& tool, const CLI::ParseError& error) {
  const CLI::App* command = &tool;
  std::string words;
  for (;;) {
    const std::vector<std::string> rest = command->remaining();
    const auto option =
        std::ranges::find_if(rest, [](const std::string& word) { return word.size() > 1 && word[0] == '-'; });
    if (option != rest.end()) return UnknownOptionText(*command, *option);
    const std::vector<CLI::App*> parsed = command->get_subcommands();
    if (!parsed.empty()) {
      command = parsed.front();
      words += (words.empty() ? "" : " ") + command->get_name();
      continue;
    }
    if (!CommandNames(*command).empty()) {
      return rest.empty() ? CommandListText(*command, words) : UnknownCommandText(*command, words, rest.front());
    }
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError) && !rest.empty()) {
      return "unexpected argument " + Quoted(rest.front());
    }
    return error.what();
  }
}

}  // namespace oxaqrycln::oxaqry
