#include <ostream>
#include <sstream>

#include "tools/documentation/documents.h"

namespace oxaqrycln::documentation {
namespace {

// The names of the options whose argument is of a kind, separated by blanks.
struct BashOptions {
  std::string words;  // everything that may be completed
  std::string files;
  std::string directories;
  std::string values;  // anything else
};

void Append(std::string& words, const std::string& more) { words += (words.empty() ? "" : " ") + more; }

// The words that an argument may be: for "help" the commands beside it.
std::string WordsFor(const CLI::App& command, const CLI::Option& argument) {
  if (command.get_name() == "help") {
    std::string names;
    for (const CLI::App* const each : CommandsOf(*command.get_parent())) Append(names, each->get_name());
    return names;
  }
  return ChoicesOf(argument);
}

BashOptions BashOptionsOf(const CLI::App& command) {
  BashOptions options;
  for (const CLI::App* const each : CommandsOf(command)) Append(options.words, each->get_name());
  for (const CLI::Option* const argument : ArgumentsOf(command)) {
    if (const std::string choices = WordsFor(command, *argument); !choices.empty()) Append(options.words, choices);
  }
  for (const CLI::Option* const option : OptionsOf(command)) {
    Append(options.words, "--" + option->get_lnames().front());
    if (option->get_expected_min() == 0) continue;
    const std::string type = option->get_type_name();
    std::string& kind = type == "FILE" ? options.files : type == "DIRECTORY" ? options.directories : options.values;
    Append(kind, Joined(NamesOf(*option), " "));
  }
  return options;
}

void WriteBashCommand(const CLI::App& command, const std::string& name, std::string& known, std::ostream& out) {
  const BashOptions options = BashOptionsOf(command);
  out << "    \"" << name << "\")\n      words=\"" << options.words << "\"\n";
  if (!options.files.empty()) out << "      files=\"" << options.files << "\"\n";
  if (!options.directories.empty()) out << "      directories=\"" << options.directories << "\"\n";
  if (!options.values.empty()) out << "      values=\"" << options.values << "\"\n";
  for (const CLI::Option* const argument : ArgumentsOf(command)) {
    if (argument->get_name() == "FILE") out << "      takes_files=yes\n";
  }
  out << "      ;;\n";
  for (const CLI::App* const each : CommandsOf(command)) {
    known += (known.empty() ? "\"" : "|\"") + name + " " + each->get_name() + "\"";
    WriteBashCommand(*each, name.empty() ? each->get_name() : name + " " + each->get_name(), known, out);
  }
}

std::string ZshQuoted(const std::string& text) { return "'" + Replaced(text, "'", R"('\'')") + "'"; }

// A text between the brackets of an argument.
std::string InBrackets(const std::string& text) { return Replaced(Replaced(text, "[", R"(\[)"), "]", R"(\])"); }

std::string ZshArgument(const std::string& choices, const std::string& name) {
  std::string action = choices.empty() ? "" : "(" + choices + ")";
  if (name == "FILE") action = "_files";
  if (name == "DIRECTORY") action = "_files -/";
  return ":" + Replaced(name, ":", R"(\:)") + ":" + action;
}

std::string ZshOption(const CLI::Option& option) {
  const std::vector<std::string> names = NamesOf(option);
  std::string excluded = names.size() > 1 ? Joined(names, " ") : "";
  for (const CLI::Option* const other : option.get_excludes()) Append(excluded, Joined(NamesOf(*other), " "));
  const bool isRepeated = option.get_expected_max() > 1;
  std::string rest = "[" + InBrackets(Replaced(option.get_description(), "\n", " ")) + "]";
  if (option.get_expected_max() > 0) {
    rest += (option.get_expected_min() == 0 ? ":" : "") + ZshArgument(ChoicesOf(option), option.get_type_name());
  }
  std::string argument;
  for (const std::string& name : names) {
    const std::string head = excluded.empty() ? "" : "(" + excluded + ")";
    argument += " \\\n    " + ZshQuoted(head + (isRepeated ? "*" : "") + name + rest);
  }
  return argument;
}

void WriteZshFunction(const CLI::App& command, const std::string& function, std::ostream& out) {
  const std::vector<const CLI::App*> commands = CommandsOf(command);
  out << function << "() {\n";
  if (!commands.empty()) {
    out << "  if (( CURRENT > 2 )); then\n    shift words\n    (( CURRENT-- ))\n"
        << "    (( $+functions[" << function << "_$words[1]] )) && " << function << "_$words[1]\n    return\n  fi\n"
        << "  local -a commands=(\n";
    for (const CLI::App* const each : commands) {
      out << "    " << ZshQuoted(each->get_name() + ":" + each->get_description()) << '\n';
    }
    out << "  )\n  _describe command commands\n";
  }
  out << "  _arguments";
  for (const CLI::Option* const option : OptionsOf(command)) out << ZshOption(*option);
  int number = 0;
  for (const CLI::Option* const argument : ArgumentsOf(command)) {
    const std::string place = argument->get_expected_max() > 1 ? "*" : std::to_string(++number);
    out << " \\\n    " << ZshQuoted(place + ZshArgument(WordsFor(command, *argument), argument->get_name()));
  }
  out << "\n}\n\n";
  for (const CLI::App* const each : commands) WriteZshFunction(*each, function + "_" + each->get_name(), out);
}

}  // namespace

void WriteBashCompletion(const CLI::App& app, std::ostream& out) {
  std::ostringstream cases;
  std::string known;
  WriteBashCommand(app, "", known, cases);
  const std::string name = app.get_name();
  out << "# Completion of " << name << "'s commands and options for bash.\n\n_" << name << R"(() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local command="" word words="" files="" directories="" values="" takes_files=""
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$command $word" in
      )"
      << (known.empty() ? "\"\"" : known) << R"()
        command="${command:+$command }$word" ;;
    esac
  done
  case $command in
)" << cases.str()
      << R"(  esac
  if [[ " $files " == *" $previous "* ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  elif [[ " $directories " == *" $previous "* ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  elif [[ " $values " != *" $previous "* ]]; then
    mapfile -t COMPREPLY < <(compgen ${takes_files:+-f} -W "$words" -- "$current")
  fi
}

complete -F _)"
      << name << ' ' << name << '\n';
}

void WriteZshCompletion(const CLI::App& app, std::ostream& out) {
  const std::string name = app.get_name();
  out << "#compdef " << name << "\n# Completion of " << name << "'s commands and options for zsh.\n\n";
  WriteZshFunction(app, "_" + name, out);
  out << "_" << name << " \"$@\"\n";
}

}  // namespace oxaqrycln::documentation
