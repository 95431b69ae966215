#include "automation/com/module_path.h"

#include <windows.h>

#include "values/errors.h"

namespace oxaqrycln::com {
namespace {

HMODULE ThisLibrary() noexcept {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&ModulePath), &module);
  return module;
}

}  // namespace

std::wstring ModulePath() {
  constexpr DWORD kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(ThisLibrary(), path.data(), kLongestPath));
  if (path.empty()) throw RuntimeError(error::kInternalError, "The path of the library is unknown");
  return path;
}

}  // namespace oxaqrycln::com
