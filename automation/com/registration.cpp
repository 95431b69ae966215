#include "automation/com/registration.h"

#include <ole2.h>
#include <olectl.h>
#include <windows.h>

#include <string>
#include <string_view>

#include "automation/com/class_ids.h"
#include "automation/com/com_owners.h"
#include "automation/com/module_path.h"

// In oleaut32.dll since Windows Vista, but not in every version of <oleauto.h>.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpDirectory);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID locale, SYSKIND system);
}

namespace oxaqrycln::com {
namespace {

constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
constexpr std::wstring_view kDescription = L"OXAQryCln document archive query";

HKEY RootOf(RegisteredFor whom) noexcept {
  return whom == RegisteredFor::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring Path(std::wstring_view key) { return std::wstring(LR"(Software\Classes\)").append(key); }

std::wstring ClassKey() { return std::wstring(LR"(CLSID\)").append(kClassId); }

bool SetValue(HKEY root, std::wstring_view key, const wchar_t* name, std::wstring_view value) {
  const std::wstring text(value);
  const auto byteCount = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  return RegSetKeyValueW(root, Path(key).c_str(), name, REG_SZ, text.c_str(), byteCount) == ERROR_SUCCESS;
}

bool SetClassKeys(HKEY root) {
  struct Entry {
    const wchar_t* key;
    const wchar_t* name;
    std::wstring_view value;
  };
  const std::wstring path = ModulePath();
  for (const Entry& entry : {Entry{L"", nullptr, kDescription},
                             {LR"(\InprocServer32)", nullptr, path},
                             {LR"(\InprocServer32)", L"ThreadingModel", L"Apartment"},
                             {LR"(\ProgID)", nullptr, kVersionedProgramId},
                             {LR"(\VersionIndependentProgID)", nullptr, kProgramId},
                             {LR"(\TypeLib)", nullptr, kLibraryId},
                             {LR"(\Version)", nullptr, kLibraryVersion},
                             {LR"(\Programmable)", nullptr, L""}}) {
    if (!SetValue(root, ClassKey() + entry.key, entry.name, entry.value)) return false;
  }
  return true;
}

bool SetProgramKeys(HKEY root, std::wstring_view program) {
  const std::wstring key(program);
  return SetValue(root, key, nullptr, kDescription) && SetValue(root, key + LR"(\CLSID)", nullptr, kClassId) &&
         (program == kVersionedProgramId || SetValue(root, key + LR"(\CurVer)", nullptr, kVersionedProgramId));
}

bool DeleteKey(HKEY root, std::wstring_view key) {
  const LSTATUS status = RegDeleteTreeW(root, Path(key).c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

bool MeansThisClass(HKEY root, std::wstring_view program) {
  wchar_t id[64] = {};
  DWORD byteCount = sizeof id;
  const std::wstring key = Path(program) + LR"(\CLSID)";
  return RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, id, &byteCount) == ERROR_SUCCESS &&
         _wcsicmp(id, std::wstring(kClassId).c_str()) == 0;
}

bool DeleteProgramKeys(HKEY root, std::wstring_view program) {
  return !MeansThisClass(root, program) || DeleteKey(root, program);
}

bool RegisterLibrary(RegisteredFor whom) {
  std::wstring path = ModulePath();
  ComReference<ITypeLib> library;
  if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Receive()))) return false;
  const auto enter = whom == RegisteredFor::Machine ? &RegisterTypeLib : &RegisterTypeLibForUser;
  return SUCCEEDED(enter(library.get(), path.data(), nullptr));
}

void UnregisterLibrary(RegisteredFor whom) {
  const auto remove = whom == RegisteredFor::Machine ? &UnRegisterTypeLib : &UnRegisterTypeLibForUser;
  remove(IdOf(kLibraryId), kLibraryMajor, kLibraryMinor, LOCALE_NEUTRAL, kSystem);  // may not be there
}

}  // namespace

HRESULT Register(RegisteredFor whom) {
  const HKEY root = RootOf(whom);
  const bool hasClass =
      SetClassKeys(root) && SetProgramKeys(root, kVersionedProgramId) && SetProgramKeys(root, kProgramId);
  if (hasClass && RegisterLibrary(whom)) return S_OK;
  Unregister(whom);
  return hasClass ? SELFREG_E_TYPELIB : SELFREG_E_CLASS;
}

HRESULT Unregister(RegisteredFor whom) {
  const HKEY root = RootOf(whom);
  UnregisterLibrary(whom);
  bool isDone = DeleteProgramKeys(root, kProgramId);
  isDone = DeleteProgramKeys(root, kVersionedProgramId) && isDone;
  isDone = DeleteKey(root, ClassKey()) && isDone;
  return isDone ? S_OK : SELFREG_E_CLASS;
}

}  // namespace oxaqrycln::com
