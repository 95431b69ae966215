// automation_object.h - a clsQuery as a host reaches it: made by COM, called through IDispatch.
#ifndef OXAQRYCLN_TESTS_AUTOMATION_COM_AUTOMATION_OBJECT_H_
#define OXAQRYCLN_TESTS_AUTOMATION_COM_AUTOMATION_OBJECT_H_

#include <ole2.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/com/class_ids.h"
#include "automation/com/com_owners.h"

namespace oxaqrycln::testing {

// COM on the calling thread, in an apartment of its own.
struct ComApartment {
  ComApartment() { CoInitialize(nullptr); }
  ~ComApartment() { CoUninitialize(); }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
};

// What the runner passes.
inline std::wstring Setting(const wchar_t* name) {
  const wchar_t* const value = _wgetenv(name);
  return value == nullptr ? L"" : value;
}

inline VARIANT Text(std::wstring_view text) {
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return value;
}

inline VARIANT Number(LONG number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

inline VARIANT Boolean(bool boolean) {
  VARIANT value{};
  value.vt = VT_BOOL;
  value.boolVal = boolean ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

inline VARIANT LeftOut() {
  VARIANT value{};
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

inline VARIANT Reference(VARIANT& variable) {
  VARIANT value{};
  value.vt = VT_BYREF | VT_VARIANT;
  value.pvarVal = &variable;
  return value;
}

inline VARIANT Reference(VARTYPE type, void* variable) {
  VARIANT value{};
  value.vt = static_cast<VARTYPE>(VT_BYREF | type);
  value.byref = variable;
  return value;
}

inline std::wstring TextOf(const VARIANT& value) {
  return value.vt == VT_BSTR && value.bstrVal != nullptr ? std::wstring(value.bstrVal, SysStringLen(value.bstrVal))
                                                         : L"";
}

struct Outcome {
  HRESULT status = E_FAIL;
  com::OwnedVariant result;
  UINT wrongArgument = 99;
};

class AutomationObject {
 public:
  using Arguments = std::vector<VARIANT>;  // in the order of the parameters; released by the call

  AutomationObject() {
    made_ =
        CoCreateInstance(com::IdOf(com::kClassId), nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object_.ReceiveVoid());
  }
  explicit AutomationObject(com::ComReference<IDispatch> object) : object_(std::move(object)) {}

  HRESULT made() const noexcept { return made_; }
  IDispatch* get() const noexcept { return object_.get(); }
  void Release() { object_ = {}; }

  DISPID NumberOf(const wchar_t* name) const {
    auto* given = const_cast<wchar_t*>(name);
    DISPID number = DISPID_UNKNOWN;
    object_->GetIDsOfNames(IID_NULL, &given, 1, LOCALE_USER_DEFAULT, &number);
    return number;
  }

  // The arguments behind the positional ones are named.
  Outcome Invoke(DISPID number, WORD access, Arguments arguments, std::vector<DISPID> names = {}) const {
    const std::size_t positional = arguments.size() - names.size();
    Arguments reversed(arguments.begin() + static_cast<std::ptrdiff_t>(positional), arguments.end());
    for (std::size_t i = positional; i-- > 0;) reversed.push_back(arguments[i]);
    DISPPARAMS parameters{reversed.data(), names.data(), static_cast<UINT>(reversed.size()),
                          static_cast<UINT>(names.size())};
    Outcome outcome;
    outcome.status = object_->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, access, &parameters,
                                     outcome.result.Receive(), nullptr, &outcome.wrongArgument);
    for (VARIANT& each : arguments) VariantClear(&each);
    return outcome;
  }
  Outcome Call(const wchar_t* name, Arguments arguments = {}) const {
    return Invoke(NumberOf(name), DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments));
  }
  HRESULT Set(const wchar_t* name, VARIANT value) const {
    return Invoke(NumberOf(name), DISPATCH_PROPERTYPUT, {value}, {DISPID_PROPERTYPUT}).status;
  }

  // Settings as a page makes them, and Init without a database; whether that worked.
  bool Start() const {
    Set(L"strSessionID", Text(L"host"));
    Set(L"strTELOUser", Text(L"webuser"));
    Set(L"lngRequestTimeout", Number(10));
    Set(L"strBlobPathLocal", Text(Setting(L"OXAQRYCLN_TEST_FOLDER")));
    Set(L"RemoteHosts", Text(Setting(L"OXAQRYCLN_TEST_SERVER")));
    const Outcome started = Call(L"Init", {Boolean(false)});
    return started.status == S_OK && started.result.get().boolVal == VARIANT_TRUE;
  }

 private:
  com::ComReference<IDispatch> object_;
  HRESULT made_ = S_OK;
};

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_AUTOMATION_COM_AUTOMATION_OBJECT_H_
