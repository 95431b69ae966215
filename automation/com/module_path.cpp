#include "automation/com/module_path.h"

#include <windows.h>

#include "values/errors.h"

namespace oxaqrycln::com {
namespace {

HMODULE ModuleOfThis(DWORD options) noexcept {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | options, reinterpret_cast<LPCWSTR>(&ModulePath), &module);
  return module;
}

}  // namespace

std::wstring ModulePath() {
  constexpr DWORD kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(
      GetModuleFileNameW(ModuleOfThis(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), path.data(), kLongestPath));
  if (path.empty()) throw RuntimeError(error::kInternalError, "The path of the library is unknown");
  return path;
}

void StayLoaded() noexcept { ModuleOfThis(GET_MODULE_HANDLE_EX_FLAG_PIN); }

}  // namespace oxaqrycln::com
