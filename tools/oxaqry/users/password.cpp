#include "tools/oxaqry/users/password.h"

#include <istream>

#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

std::string AskPassword(const PasswordSource& source, const std::string& prompt, const Output& output) {
  std::string line;
  if (source.isInput) {
    if (!std::getline(output.in, line)) throw CommandError("standard input has no further line for a password");
    if (line.ends_with('\r')) line.pop_back();
  } else {
    if (!output.terminals.in) throw UsageError("there is no terminal to ask for a password: give --password-stdin");
    line = ReadHiddenLine(prompt + ": ");
  }
  return TextFromUtf8(line);
}

std::string AskNewPassword(clsQuery& query, const PasswordSource& source, const std::string& what,
                           const Output& output) {
  std::string password = AskPassword(source, "New " + what, output);
  RequireStorable(query, password, "the " + what);
  if (!source.isInput && AskPassword(source, "Repeat the " + what, output) != password) {
    throw CommandError("the two passwords differ");
  }
  return password;
}

void RequireStorable(clsQuery& query, const std::string& password, const std::string& what) {
  constexpr std::size_t kMostCharacters = 500;  // a column for encoded passwords has two digits a character
  if (password.empty()) throw CommandError(what + " is empty");
  if (password.find('\0') != std::string::npos) throw CommandError(what + " contains a NUL");
  if (password.size() > kMostCharacters || query.Decode(query.Encode(password)) != password) {
    throw CommandError(what +
                       " cannot be stored: the encoding loses a character whose code plus position is 174 or more. "
                       "Choose a shorter one of plain letters, digits and signs");
  }
}

}  // namespace oxaqrycln::oxaqry
