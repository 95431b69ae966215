#include <bsd/readpassphrase.h>

#include <array>

#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/users/password.h"

namespace oxaqrycln::oxaqry {

std::string ReadHiddenLine(const std::string& prompt) {
  std::array<char, 4096> line{};  // more than a terminal takes for a line
  const Interruption interruption;
  const char* const read = readpassphrase(prompt.c_str(), line.data(), line.size(), RPP_REQUIRE_TTY);
  interruption.Check();
  if (read == nullptr) throw CommandError("no password can be read from the terminal");
  return read;
}

}  // namespace oxaqrycln::oxaqry
