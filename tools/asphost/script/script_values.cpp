#include "tools/asphost/script/script_values.h"

#include <cstring>
#include <new>

namespace oxaqrycln::asphost {
namespace {

constexpr UINT kUtf8CodePage = CP_UTF8;

OwnedVariant Plain(VARTYPE type) {
  VARIANT value{};
  value.vt = type;
  return OwnedVariant(value);
}

OwnedVariant DefaultValueOf(IDispatch* object) {
  OwnedVariant result;
  DISPPARAMS none{};
  if (object == nullptr || FAILED(object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                                 &none, result.Receive(), nullptr, nullptr))) {
    throw ScriptError{kTypeMismatch, L"The object has no default value"};
  }
  return result;
}

OwnedVariant ConvertTo(VARTYPE type, const VARIANT& given) {
  OwnedVariant value = CopyOf(given);
  if (value.get().vt == VT_DISPATCH) value = DefaultValueOf(value.get().pdispVal);
  OwnedVariant converted;
  const HRESULT result =
      VariantChangeType(converted.Receive(), const_cast<VARIANT*>(&value.get()), VARIANT_ALPHABOOL, type);
  if (FAILED(result)) throw ScriptError{kTypeMismatch, L"Type mismatch"};
  return converted;
}

std::size_t ElementCount(const SAFEARRAY& array) {
  std::size_t count = 1;
  for (USHORT i = 0; i < array.cDims; ++i) count *= array.rgsabound[i].cElements;
  return count;
}

}  // namespace

void Check(HRESULT result, long number) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result)) throw ScriptError{number, L"An operation of the system failed"};
}

std::wstring ToWide(std::string_view bytes, unsigned codePage) {
  if (bytes.empty()) return {};
  const int length = static_cast<int>(bytes.size());
  std::wstring text(bytes.size(), L'\0');  // no byte becomes more than one unit
  const int units = MultiByteToWideChar(codePage, 0, bytes.data(), length, text.data(), length);
  if (units <= 0) throw ScriptError{kIllegalCall, L"A text cannot be converted from its code page"};
  text.resize(static_cast<std::size_t>(units));
  return text;
}

std::string ToBytes(std::wstring_view text, unsigned codePage) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  // Similar characters would turn what HTMLEncode let through into "<".
  const DWORD flags = codePage == kUtf8CodePage ? 0 : WC_NO_BEST_FIT_CHARS;
  std::string bytes(text.size() * 3, '\0');
  const int count = WideCharToMultiByte(codePage, flags, text.data(), length, bytes.data(),
                                        static_cast<int>(bytes.size()), nullptr, nullptr);
  if (count <= 0) throw ScriptError{kIllegalCall, L"A text cannot be converted to its code page"};
  bytes.resize(static_cast<std::size_t>(count));
  return bytes;
}

OwnedVariant TextValue(std::wstring_view text) {
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (value.bstrVal == nullptr) throw std::bad_alloc();
  return OwnedVariant(value);
}

OwnedVariant NumberValue(long number) {
  OwnedVariant value = Plain(VT_I4);
  value.Receive()->lVal = number;
  return value;
}

OwnedVariant BooleanValue(bool isTrue) {
  OwnedVariant value = Plain(VT_BOOL);
  value.Receive()->boolVal = isTrue ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

OwnedVariant BytesValue(std::string_view bytes) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (array == nullptr) throw std::bad_alloc();
  if (!bytes.empty()) std::memcpy(array->pvData, bytes.data(), bytes.size());
  VARIANT value{};
  value.vt = VT_ARRAY | VT_UI1;
  value.parray = array;
  return OwnedVariant(value);
}

OwnedVariant ObjectValue(IDispatch* object) {
  if (object != nullptr) object->AddRef();
  VARIANT value{};
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return OwnedVariant(value);
}

OwnedVariant CopyOf(const VARIANT& value) {
  OwnedVariant copy;
  Check(VariantCopyInd(copy.Receive(), const_cast<VARIANT*>(&value)), kTypeMismatch);
  return copy;
}

std::wstring TextOf(const VARIANT& value) {
  if (value.vt == VT_BSTR) return {value.bstrVal, value.bstrVal + SysStringLen(value.bstrVal)};
  const OwnedVariant copy = CopyOf(value);
  if (copy.get().vt == VT_NULL || copy.get().vt == VT_EMPTY) return {};
  const OwnedVariant text = ConvertTo(VT_BSTR, copy.get());
  return {text.get().bstrVal, text.get().bstrVal + SysStringLen(text.get().bstrVal)};
}

long NumberOf(const VARIANT& value) { return ConvertTo(VT_I4, value).get().lVal; }

DATE DateOf(const VARIANT& value) { return ConvertTo(VT_DATE, value).get().date; }

bool BooleanOf(const VARIANT& value) { return ConvertTo(VT_BOOL, value).get().boolVal != VARIANT_FALSE; }

std::string BytesOf(const VARIANT& value) {
  const OwnedVariant copy = CopyOf(value);
  if (copy.get().vt != (VT_ARRAY | VT_UI1)) throw ScriptError{kTypeMismatch, L"An array of bytes is needed"};
  const std::size_t count = ElementCount(*copy.get().parray);
  const ArrayData elements(copy.get().parray);
  Check(elements.result);
  return {static_cast<const char*>(elements.data), count};
}

bool HoldsObject(const VARIANT& value) {
  const auto type = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
  if (type == VT_DISPATCH || type == VT_UNKNOWN) return true;
  if (value.vt != (VT_ARRAY | VT_VARIANT) || value.parray == nullptr) return false;
  const std::size_t count = ElementCount(*value.parray);
  const ArrayData elements(value.parray);
  Check(elements.result);
  const auto* const variants = static_cast<const VARIANT*>(elements.data);
  for (std::size_t i = 0; i < count; ++i) {
    if (HoldsObject(variants[i])) return true;
  }
  return false;
}

}  // namespace oxaqrycln::asphost
