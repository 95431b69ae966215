#include "tools/oxaqry/users/password.h"

#include <istream>

#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// What a column of encoded passwords holds, at two digits a character.
constexpr std::size_t kMostCharacters = 500;

std::string InCodePage(const std::string& utf8) {
  auto text = FromUtf8(utf8);
  if (!text) throw CommandError("the password holds a character that has no place in the code page Windows-1252");
  return *std::move(text);
}

}  // namespace

std::string AskPassword(const PasswordSource& source, const std::string& question, const Output& output) {
  if (source.isInput) {
    std::string line;
    if (!std::getline(output.in, line)) throw CommandError("standard input has no further line for a password");
    if (line.ends_with('\r')) line.pop_back();
    return InCodePage(line);
  }
  if (!output.terminals.in) throw UsageError("there is no terminal to ask on: give --password-stdin");
  return InCodePage(ReadHiddenLine(question + ": ", output.err));
}

std::string AskNewPassword(clsQuery& query, const PasswordSource& source, const std::string& what,
                           const Output& output) {
  std::string password = AskPassword(source, "New " + what, output);
  CheckPassword(query, password, "the " + what);
  if (!source.isInput && AskPassword(source, "The same again", output) != password) {
    throw CommandError("the two passwords are not the same");
  }
  return password;
}

void CheckPassword(clsQuery& query, const std::string& password, const std::string& what) {
  if (password.empty()) throw CommandError(what + " is empty");
  if (password.find('\0') != std::string::npos) throw CommandError(what + " holds a NUL");
  if (password.size() > kMostCharacters || query.Decode(query.Encode(password)) != password) {
    throw CommandError(what +
                       " cannot be kept: the encoding loses a character whose code and position come to 174 or more. "
                       "Take a shorter one of plain letters, digits and signs");
  }
}

}  // namespace oxaqrycln::oxaqry
