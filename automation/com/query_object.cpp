#include "automation/com/query_object.h"

#include <span>
#include <string>
#include <string_view>

#include "automation/com/argument_list.h"
#include "automation/com/boundary.h"
#include "automation/com/class_ids.h"
#include "automation/com/com_values.h"
#include "automation/com/module_path.h"
#include "component/query_watch.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::com {
namespace {

std::string NameOf(const wchar_t* name) {
  const std::wstring_view wide(name);
  std::string narrow;
  for (const wchar_t letter : wide) narrow += letter < 0x80 ? static_cast<char>(letter) : '?';
  return narrow;
}

DISPID PositionOf(const MethodEntry& method, const std::string& parameter) {
  for (std::size_t i = 0; i < method.parameters.size(); ++i) {
    if (UpperCase(method.parameters[i].name) == UpperCase(parameter)) return static_cast<DISPID>(i);
  }
  return DISPID_UNKNOWN;
}

void Return(VARIANT* result, OwnedVariant value) noexcept {
  if (result != nullptr) *result = value.Release();
}

// Reads a single argument that must not be left out.
Variant OnlyArgument(const DISPPARAMS& parameters) {
  if (parameters.cArgs != 1) throw RuntimeError(error::kWrongArgumentCount);
  const VARIANT* given = parameters.rgvarg;
  if (given->vt == (VT_BYREF | VT_VARIANT) && given->pvarVal != nullptr) given = given->pvarVal;
  if (IsLeftOut(*given)) throw RuntimeError(error::kArgumentNotOptional);
  return FromCom(*given);
}

HRESULT AccessVariable(const VariableEntry& variable, clsQuery& query, WORD access, const DISPPARAMS& parameters,
                       VARIANT* result) {
  if ((access & DISPATCH_PROPERTYPUT) != 0) {
    variable.set(query, OnlyArgument(parameters));
    return S_OK;
  }
  if ((access & DISPATCH_PROPERTYGET) == 0) return DISP_E_MEMBERNOTFOUND;
  if (parameters.cArgs != 0) throw RuntimeError(error::kWrongArgumentCount);
  Return(result, ToCom(variable.get(query)));
  return S_OK;
}

HRESULT AssignProperty(const MethodEntry& property, clsQuery& query, WORD access, const DISPPARAMS& parameters) {
  if ((access & DISPATCH_PROPERTYPUT) == 0) return DISP_E_MEMBERNOTFOUND;
  Variant value = OnlyArgument(parameters);
  Variant* const argument = &value;
  property.call(query, {&argument, 1});
  return S_OK;
}

HRESULT CallMethod(const MethodEntry& method, clsQuery& query, ArgumentList& arguments, WORD access,
                   const DISPPARAMS& parameters, VARIANT* result, UINT* wrongArgument) {
  if ((access & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  struct Clearing {
    ArgumentList& list;
    ~Clearing() { list.Clear(); }
  };
  const Clearing atEnd{arguments};
  const HRESULT read = Guarded([&] {
    arguments.Read(method, parameters);
    return S_OK;
  });
  if (FAILED(read)) {
    if (wrongArgument != nullptr) *wrongArgument = arguments.FailedAt();
    return read;
  }
  Variant returned = method.call(query, arguments.Pointers());
  OwnedVariant converted = result != nullptr ? ToCom(returned) : OwnedVariant();
  arguments.ConvertOutputs();
  arguments.WriteOutputs();
  Return(result, std::move(converted));
  QueryWatch::ReuseText(query, returned);
  return S_OK;
}

// While it lives, further calls of the instance are refused, and the instance stays.
class RunningCall {
 public:
  RunningCall(IDispatch& object, bool& isRunning) noexcept : object_(object), isRunning_(isRunning) {
    object_.AddRef();
    isRunning_ = true;
  }
  ~RunningCall() {
    isRunning_ = false;
    object_.Release();
  }
  RunningCall(const RunningCall&) = delete;
  RunningCall& operator=(const RunningCall&) = delete;

 private:
  IDispatch& object_;
  bool& isRunning_;
};

}  // namespace

QueryObject::QueryObject() : thread_(GetCurrentThreadId()) {}

HRESULT QueryObject::QueryInterface(REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool isKnown = interfaceId == IID_IUnknown || interfaceId == IID_IDispatch || interfaceId == IdOf(kInterfaceId);
  *object = isKnown ? static_cast<IDispatch*>(this) : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG QueryObject::AddRef() { return ++references_; }

ULONG QueryObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT QueryObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT QueryObject::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** information) {
  if (information == nullptr) return E_POINTER;
  *information = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return Guarded([&] {
    ComReference<ITypeLib> library;
    const HRESULT loaded = LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.Receive());
    return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(IdOf(kInterfaceId), information);
  });
}

HRESULT QueryObject::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID /*locale*/, DISPID* numbers) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || numbers == nullptr || count == 0) return E_INVALIDARG;
  return Guarded([&] {
    const std::string name = NameOf(names[0]);
    const MethodEntry* const method = FindMethod(name);
    const VariableEntry* const variable = FindVariable(name);
    numbers[0] = method != nullptr ? method->number : variable != nullptr ? variable->number : DISPID_UNKNOWN;
    bool isKnown = numbers[0] != DISPID_UNKNOWN;
    for (UINT i = 1; i < count; ++i) {
      numbers[i] = method != nullptr ? PositionOf(*method, NameOf(names[i])) : DISPID_UNKNOWN;
      isKnown = isKnown && numbers[i] != DISPID_UNKNOWN;
    }
    return isKnown ? S_OK : DISP_E_UNKNOWNNAME;
  });
}

HRESULT QueryObject::Invoke(DISPID number, REFIID reserved, LCID /*locale*/, WORD access, DISPPARAMS* parameters,
                            VARIANT* result, EXCEPINFO* /*details*/, UINT* wrongArgument) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr) return E_INVALIDARG;
  if (GetCurrentThreadId() != thread_) return RPC_E_WRONG_THREAD;
  if (isRunning_) return RPC_E_CALL_REJECTED;
  const RunningCall call(*this, isRunning_);
  return Guarded([&] { return Dispatch(number, access, *parameters, result, wrongArgument); });
}

HRESULT QueryObject::Dispatch(DISPID number, WORD access, const DISPPARAMS& parameters, VARIANT* result,
                              UINT* wrongArgument) {
  const Member member = FindMember(number);
  if (member.variable != nullptr) return AccessVariable(*member.variable, query_, access, parameters, result);
  if (member.method == nullptr) return DISP_E_MEMBERNOTFOUND;
  if (member.method->isProperty) return AssignProperty(*member.method, query_, access, parameters);
  return CallMethod(*member.method, query_, arguments_, access, parameters, result, wrongArgument);
}

}  // namespace oxaqrycln::com
