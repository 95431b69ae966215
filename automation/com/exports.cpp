// The functions that the system calls in an automation server.
#include <ole2.h>
#include <windows.h>

#include "automation/com/boundary.h"
#include "automation/com/class_factory.h"
#include "automation/com/class_ids.h"
#include "automation/com/registration.h"
#include "platform/module_info.h"

namespace com = oxaqrycln::com;

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (classId != com::IdOf(com::kClassId)) return CLASS_E_CLASSNOTAVAILABLE;
  oxaqrycln::KeepThisModule();
  return com::TheClassFactory().QueryInterface(interfaceId, object);
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() {
  return com::Guarded([] { return com::Register(com::RegisteredFor::Machine); });
}

STDAPI DllUnregisterServer() {
  return com::Guarded([] { return com::Unregister(com::RegisteredFor::Machine); });
}

// With the command line "user" for the current user only, which needs no rights of an administrator.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
  const bool isForUser = commandLine != nullptr && _wcsicmp(commandLine, L"user") == 0;
  const auto whom = isForUser ? com::RegisteredFor::User : com::RegisteredFor::Machine;
  return com::Guarded([&] { return install != FALSE ? com::Register(whom) : com::Unregister(whom); });
}
