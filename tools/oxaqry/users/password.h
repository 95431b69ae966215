// password.h - passwords of web users, from a terminal without echo or from lines of standard input.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_PASSWORD_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_PASSWORD_H_

#include <string>

#include "component/clsQuery.h"
#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

// Where passwords come from.
struct PasswordSource {
  bool isInput = false;  // lines of standard input, one for each password; else the terminal
};

// A line typed at the terminal after the prompt, without echo; UTF-8. The terminal is restored afterwards, also when a
// signal ends the prompt, which raises Interrupted. Raises CommandError when the terminal cannot be read.
std::string ReadHiddenLine(const std::string& prompt);

// The next password, asked for once; in the code page. Raises UsageError when there is no terminal to ask on,
// CommandError when the input has no further line.
std::string AskPassword(const PasswordSource& source, const std::string& prompt, const Output& output);
// A new one, asked for twice on a terminal. Raises CommandError, also for one that the database cannot store.
std::string AskNewPassword(clsQuery& query, const PasswordSource& source, const std::string& what,
                           const Output& output);

// Raises CommandError for a password, in the code page, that is empty or that its encoding would change.
void RequireStorable(clsQuery& query, const std::string& password, const std::string& what);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_PASSWORD_H_
