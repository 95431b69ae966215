#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include <array>

#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/wide_text.h"
#include "tools/oxaqry/users/password.h"

namespace oxaqrycln::oxaqry {
namespace {

// One side of the console, also when the standard streams are redirected.
class Console {
 public:
  explicit Console(const wchar_t* name)
      : handle_(CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, 0, nullptr)) {
    if (GetConsoleMode(handle_, &mode_) == 0) Fail();
  }
  ~Console() {
    SetConsoleMode(handle_, mode_);
    CloseHandle(handle_);
  }
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  void HideInput() const { SetConsoleMode(handle_, ENABLE_PROCESSED_INPUT | ENABLE_LINE_INPUT); }
  // Without its end.
  std::wstring ReadLine() const {
    std::array<wchar_t, 4096> line{};
    DWORD count = 0;
    if (ReadConsoleW(handle_, line.data(), static_cast<DWORD>(line.size()), &count, nullptr) == 0) Fail();
    const std::wstring text(line.data(), count);
    return text.substr(0, text.find_first_of(L"\r\n"));
  }
  void Write(const std::string& utf8) const {
    std::array<wchar_t, 4096> wide{};
    const int count = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                                          static_cast<int>(wide.size()));
    WriteConsoleW(handle_, wide.data(), static_cast<DWORD>(count), nullptr, nullptr);
  }

 private:
  [[noreturn]] static void Fail() { throw CommandError("no password can be read from the terminal"); }
  HANDLE handle_;
  DWORD mode_ = 0;
};

}  // namespace

std::string ReadHiddenLine(const std::string& prompt) {
  const Interruption interruption;
  const Console screen(L"CONOUT$");
  const Console keyboard(L"CONIN$");
  screen.Write(prompt);
  keyboard.HideInput();
  const std::wstring line = keyboard.ReadLine();
  screen.Write("\r\n");
  interruption.Check();
  return Utf8FromWide(line);
}

}  // namespace oxaqrycln::oxaqry
