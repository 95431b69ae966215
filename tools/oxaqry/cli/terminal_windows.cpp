#include <winsock2.h>
// The other headers of the system follow winsock2.h.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>

#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/wide_text.h"

namespace oxaqrycln::oxaqry {
namespace {

bool IsTerminal(DWORD stream) noexcept {
  DWORD mode = 0;  // only a console has one; other devices, such as NUL, are no terminals
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}  // namespace

Terminals StandardTerminals() noexcept {
  return {
      .in = IsTerminal(STD_INPUT_HANDLE), .out = IsTerminal(STD_OUTPUT_HANDLE), .err = IsTerminal(STD_ERROR_HANDLE)};
}

std::size_t TerminalColumns(const Output& output) noexcept {
  CONSOLE_SCREEN_BUFFER_INFO screen{};
  if (!output.terminals.out || GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &screen) == 0) return 0;
  return static_cast<std::size_t>(screen.srWindow.Right - screen.srWindow.Left + 1);
}

void PrepareStandardStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  static const UINT former = GetConsoleOutputCP();
  if (former == 0) return;  // there is no console
  SetConsoleOutputCP(CP_UTF8);
  std::atexit([] { SetConsoleOutputCP(former); });
}

// The arguments that main gets have lost every character that is not in the code page of the system.
std::vector<std::string> ProgramArguments(int /*count*/, char** /*arguments*/) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> wide(CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Utf8FromWide(wide.get()[i]));
  return arguments;
}

const char* EnvironmentVariable(const char* name) {
  static std::map<std::string, std::string> known;  // keeps the values for as long as the program runs
  const wchar_t* const wide = _wgetenv(std::wstring(name, name + std::char_traits<char>::length(name)).c_str());
  return wide == nullptr ? nullptr : known.insert_or_assign(name, Utf8FromWide(wide)).first->second.c_str();
}

}  // namespace oxaqrycln::oxaqry
