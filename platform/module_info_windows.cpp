#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include <filesystem>
#include <string>

#include "platform/module_info.h"

namespace oxaqrycln {
namespace {

namespace fs = std::filesystem;

std::string Utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace

ModuleInfo ThisModule() {
  constexpr DWORD kLongestPath = 32768;
  HMODULE handle = nullptr;
  if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<LPCWSTR>(&ThisModule), &handle) == 0) {
    return {};
  }
  std::wstring name(kLongestPath, L'\0');
  name.resize(GetModuleFileNameW(handle, name.data(), kLongestPath));
  const fs::path path(name);
  return {Utf8(path.parent_path()), Utf8(path.filename()), reinterpret_cast<std::uintptr_t>(handle)};
}

void KeepThisModule() noexcept {
  HMODULE handle = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&KeepThisModule), &handle);
}

std::int64_t CurrentThreadId() noexcept { return GetCurrentThreadId(); }

}  // namespace oxaqrycln
