// documents.h - the shell completions and the manual page, made from the commands.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTATION_DOCUMENTS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTATION_DOCUMENTS_H_

#include <CLI/CLI.hpp>
#include <iosfwd>
#include <string>
#include <vector>

namespace oxaqrycln::oxaqry {

void WriteBashCompletion(const CLI::App& app, std::ostream& out);
void WriteZshCompletion(const CLI::App& app, std::ostream& out);
// Copies the template and replaces three kinds of lines: "@COMMAND search" by the heading of that command, "@OPTIONS
// search" by a list of its options without the settings, "@SETTINGS" by a list of the settings. Raises
// std::runtime_error for an unknown command and when the template leaves a command or its options out.
void WriteManualPage(const CLI::App& app, std::istream& page, std::ostream& out);

// The commands directly below one, and its options in their order: those with names, and its arguments.
std::vector<const CLI::App*> CommandsOf(const CLI::App& app);
std::vector<const CLI::Option*> OptionsOf(const CLI::App& app);
std::vector<const CLI::Option*> ArgumentsOf(const CLI::App& app);
// "-o" and "--output".
std::vector<std::string> NamesOf(const CLI::Option& option);
// The words that an argument may be, separated by blanks; "" for any.
std::string ChoicesOf(const CLI::Option& option);
std::string Joined(const std::vector<std::string>& words, const std::string& separator);
std::string Replaced(std::string text, const std::string& from, const std::string& to);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTATION_DOCUMENTS_H_
