// user_password.h - passwords of web users, from a terminal without echo or from lines of standard input.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_PASSWORD_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_PASSWORD_H_

#include <string>

#include "component/clsQuery.h"
#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

// Where passwords come from.
struct PasswordSource {
  bool isInput = false;  // one line each of standard input; else the terminal
};

// One line of the terminal at standard input, which shows nothing of it; the question stands on standard error. The
// terminal is as before afterwards, also when a signal ends the question, which raises Interrupted. UTF-8.
std::string ReadHiddenLine(const std::string& question, std::ostream& err);

// The next password, asked once; in the code page. Raises UsageError where nobody can be asked, CommandError when the
// input has no further line.
std::string AskPassword(const PasswordSource& source, const std::string& question, const Output& output);
// A new one, asked twice on a terminal. Raises CommandError, also for one that the database cannot keep.
std::string AskNewPassword(clsQuery& query, const PasswordSource& source, const std::string& what,
                           const Output& output);

// Raises CommandError for a password, in the code page, that is empty or would not come back from its encoding.
void CheckPassword(clsQuery& query, const std::string& password, const std::string& what);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_PASSWORD_H_
