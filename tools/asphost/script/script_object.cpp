#include "tools/asphost/script/script_object.h"

#include <algorithm>
#include <exception>
#include <new>

namespace oxaqrycln::asphost {
namespace {

constexpr HRESULT kVbscriptErrors = static_cast<HRESULT>(0x800A0000);

class KeyEnumerator : public IEnumVARIANT {
 public:
  explicit KeyEnumerator(std::vector<std::wstring> keys) : keys_(std::move(keys)) {}
  virtual ~KeyEnumerator() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool isKnown = id == IID_IUnknown || id == IID_IEnumVARIANT;
    *object = isKnown ? this : nullptr;
    if (!isKnown) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* values, ULONG* fetched) override {
    ULONG count = 0;
    for (; count < wanted && at_ < keys_.size(); ++count, ++at_) {
      VariantInit(&values[count]);
      values[count].vt = VT_BSTR;
      values[count].bstrVal = SysAllocStringLen(keys_[at_].data(), static_cast<UINT>(keys_[at_].size()));
    }
    if (fetched != nullptr) *fetched = count;
    return count == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = keys_.size() - at_;
    at_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    at_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

 private:
  ULONG references_ = 0;
  std::vector<std::wstring> keys_;
  std::size_t at_ = 0;
};

OwnedVariant EnumeratorOf(std::vector<std::wstring> keys) {
  IUnknown* const enumerator = std::make_unique<KeyEnumerator>(std::move(keys)).release();
  enumerator->AddRef();
  VARIANT value{};
  value.vt = VT_UNKNOWN;
  value.punkVal = enumerator;
  return OwnedVariant(value);
}

HRESULT Report(EXCEPINFO* details, long number, const std::wstring& text) {
  const HRESULT code = kVbscriptErrors + static_cast<HRESULT>(number);
  if (details != nullptr) {
    *details = {};
    details->scode = code;
    details->bstrSource = SysAllocString(L"asphost");
    details->bstrDescription = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  return DISP_E_EXCEPTION;
}

}  // namespace

Arguments::Arguments(const DISPPARAMS& parameters, WORD flags)
    : parameters_(parameters),
      isAssignment_((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0),
      count_(parameters.cArgs - (isAssignment_ ? 1U : 0U)) {
  const UINT named = isAssignment_ ? 1 : 0;
  if (parameters.cNamedArgs != named || parameters.cArgs < named) {
    throw ScriptError{kWrongArgumentCount, L"Named arguments are not supported"};
  }
}

const VARIANT& Arguments::At(std::size_t position) const {
  if (position >= count_) throw ScriptError{kWrongArgumentCount, L"Wrong number of arguments"};
  return parameters_.rgvarg[parameters_.cArgs - 1 - position];  // they are in reverse order
}

void Arguments::RequireCount(std::size_t least, std::size_t most) const {
  if (count_ < least || count_ > most) throw ScriptError{kWrongArgumentCount, L"Wrong number of arguments"};
}

void Arguments::RefuseAssignment() const {
  if (isAssignment_) throw ScriptError{kNotSupported, L"The property can only be read"};
}

HRESULT ScriptObjectBase::QueryInterface(REFIID id, void** object) {
  const bool isKnown = id == IID_IUnknown || id == IID_IDispatch;
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG ScriptObjectBase::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ScriptObjectBase::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT ScriptObjectBase::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  std::fill_n(ids, count, DISPID_UNKNOWN);
  if (count > 0) ids[0] = Find(names[0]);
  return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT ScriptObjectBase::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                 EXCEPINFO* details, UINT*) {
  try {
    BeforeCall();
    OwnedVariant value;
    if (id == DISPID_NEWENUM) {
      value = EnumeratorOf(Keys());
    } else {
      Arguments arguments(*parameters, flags);
      value = Call(id, arguments);
    }
    if (result != nullptr) *result = value.Release();
    return S_OK;
  } catch (const ScriptError& error) {
    return Report(details, error.number, error.text);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    return Report(details, kIllegalCall, ToWide(error.what(), CP_UTF8));
  }
}

OwnedVariant ScriptObjectBase::CallDefault(Arguments& arguments) {
  BeforeCall();
  return Call(DISPID_VALUE, arguments);
}

std::vector<std::wstring> ScriptObjectBase::Keys() { throw ScriptError{kNotSupported, L"Object is not a collection"}; }

bool IsSameName(std::wstring_view left, std::wstring_view right) noexcept {
  return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(), static_cast<int>(right.size()),
                              TRUE) == CSTR_EQUAL;
}

}  // namespace oxaqrycln::asphost
