#include "automation/com/scripting_objects.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "automation/com/com_values.h"
#include "component/scripting_context.h"
#include "values/errors.h"

namespace oxaqrycln::com {
namespace {

void Release(EXCEPINFO& details) noexcept {
  SysFreeString(details.bstrSource);
  SysFreeString(details.bstrDescription);
  SysFreeString(details.bstrHelpFile);
}

// Reads a property, or calls a method with the argument. Some objects do not take the two for one.
HRESULT Call(IDispatch& object, DISPID member, VARIANT* argument, OwnedVariant& result) {
  const bool isMethod = argument != nullptr;
  DISPPARAMS parameters{argument, nullptr, isMethod ? 1U : 0U, 0};
  EXCEPINFO details{};
  const HRESULT outcome =
      object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, isMethod ? DISPATCH_METHOD : DISPATCH_PROPERTYGET,
                    &parameters, result.Receive(), &details, nullptr);
  Release(details);
  return outcome;
}

// Of a name in ASCII.
std::string NarrowName(std::wstring_view name) {
  std::string narrow;
  for (const wchar_t letter : name) narrow += static_cast<char>(letter);
  return narrow;
}

OwnedVariant Call(IDispatch& object, const wchar_t* name, VARIANT* argument = nullptr) {
  auto* givenName = const_cast<wchar_t*>(name);
  DISPID member = DISPID_UNKNOWN;
  OwnedVariant result;
  HRESULT outcome = object.GetIDsOfNames(IID_NULL, &givenName, 1, LOCALE_USER_DEFAULT, &member);
  if (SUCCEEDED(outcome)) outcome = Call(object, member, argument, result);
  if (FAILED(outcome)) {
    throw RuntimeError(error::kInternalError,
                       "The scripting context refused " + NarrowName(name) + " with result " + std::to_string(outcome));
  }
  return result;
}

ComReference<IDispatch> ObjectOf(const VARIANT& value) {
  ComReference<IDispatch> object;
  const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
  if (!isObject || value.punkVal == nullptr ||
      FAILED(value.punkVal->QueryInterface(IID_IDispatch, object.ReceiveVoid()))) {
    throw RuntimeError(error::kTypeMismatch);
  }
  return object;
}

class DispatchRequest : public PageRequest {
 public:
  explicit DispatchRequest(ComReference<IDispatch> object) noexcept : object_(std::move(object)) {}

  std::int64_t TotalBytes() const override {
    const double count = FromCom(Call(*object_.get(), L"TotalBytes").get()).ToDouble();
    if (!(count >= 0 && count <= static_cast<double>(std::numeric_limits<std::int32_t>::max()))) {
      throw RuntimeError(error::kOverflow);
    }
    return static_cast<std::int64_t>(count);
  }

  Variant::Bytes BinaryRead(std::int64_t byteCount) override {
    VARIANT count{};
    count.vt = VT_I4;
    count.lVal = static_cast<LONG>(byteCount);
    if (!std::in_range<LONG>(byteCount)) throw RuntimeError(error::kOverflow);
    const OwnedVariant bytes = Call(*object_.get(), L"BinaryRead", &count);
    if (bytes.get().vt == VT_EMPTY || bytes.get().vt == VT_NULL) return {};
    return FromCom(bytes.get()).ToBytes();
  }

 private:
  const ComReference<IDispatch> object_;
};

class DispatchContext : public ScriptingContext {
 public:
  explicit DispatchContext(ComReference<IDispatch> object) noexcept : object_(std::move(object)) {}

  std::shared_ptr<PageRequest> Request() override {
    return std::make_shared<DispatchRequest>(ObjectOf(Call(*object_.get(), L"Request").get()));
  }

 private:
  const ComReference<IDispatch> object_;
};

// An object that the component cannot use.
class OpaqueObject : public Object {};

}  // namespace

Variant::ObjectRef MakeContext(ComReference<IDispatch> context) {
  return std::make_shared<DispatchContext>(std::move(context));
}

Variant DefaultValue(ComReference<IDispatch> object) {
  OwnedVariant value;
  const HRESULT outcome = Call(*object.get(), DISPID_VALUE, nullptr, value);
  const bool isValue = SUCCEEDED(outcome) && value.get().vt != VT_DISPATCH && value.get().vt != VT_UNKNOWN;
  return isValue ? FromCom(value.get()) : Variant(std::make_shared<OpaqueObject>());
}

}  // namespace oxaqrycln::com
