// parse_failure.h - says what is wrong with a command line that the parser refused.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_PARSE_FAILURE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_PARSE_FAILURE_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace oxaqrycln::oxaqry {

// The names of the commands that may follow a group, or the tool itself; none for a single command.
std::vector<std::string> CommandNames(const CLI::App& group);

// The reason for the error that the tool's parser raised: an unknown option or command, with the nearest one that there
// is, a group without a command, with its commands, or what the parser says.
std::string ParseFailureText(const CLI::App& tool, const CLI::ParseError& error);
// The same for a command that a group does not have. The words are those of the command line before it.
std::string UnknownCommandText(const CLI::App& group, const std::string& words, const std::string& name);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_PARSE_FAILURE_H_
