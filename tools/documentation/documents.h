// documents.h - the shell completions of a program and parts of its manual page, made from its parser.
#ifndef OXAQRYCLN_TOOLS_DOCUMENTATION_DOCUMENTS_H_
#define OXAQRYCLN_TOOLS_DOCUMENTATION_DOCUMENTS_H_

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace oxaqrycln::documentation {

void WriteBashCompletion(const CLI::App& app, std::ostream& out);
void WriteZshCompletion(const CLI::App& app, std::ostream& out);

// Copies a template and puts in what the parser knows.
using ManualPageWriter = std::function<void(const CLI::App& app, std::istream& page, std::ostream& out)>;
// The program "bash|zsh|man [TEMPLATE]": writes a completion, or the manual page of a template, to standard output.
// Returns the exit status.
int WriteDocument(int argumentCount, const char* const* arguments, const CLI::App& app,
                  const ManualPageWriter& writeManualPage);

// A text of a manual page.
std::string Roff(const std::string& text);
// The options as a list of a manual page, with their descriptions and defaults.
void WriteOptionList(const std::vector<const CLI::Option*>& options, std::ostream& out);

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

}  // namespace oxaqrycln::documentation

#endif  // OXAQRYCLN_TOOLS_DOCUMENTATION_DOCUMENTS_H_
