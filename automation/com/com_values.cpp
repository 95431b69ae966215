#include "automation/com/com_values.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "automation/com/scripting_objects.h"
#include "values/errors.h"

namespace oxaqrycln::com {
namespace {

static_assert(sizeof(OLECHAR) == sizeof(char16_t));

void Check(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result)) throw RuntimeError(result == DISP_E_OVERFLOW ? error::kOverflow : error::kTypeMismatch);
}

VARTYPE TypeOf(const VARIANT& value) noexcept { return static_cast<VARTYPE>(value.vt & ~VT_BYREF); }

// Where the data of a value, or of what it refers to, begin.
const void* DataOf(const VARIANT& value) {
  if ((value.vt & VT_BYREF) == 0)
    return value.vt == VT_DECIMAL ? static_cast<const void*>(&value.decVal) : &value.llVal;
  if (value.byref == nullptr) throw RuntimeError(error::kTypeMismatch);
  return value.byref;
}

template <typename Type>
Type Read(const void* data) noexcept {
  Type value;
  std::memcpy(&value, data, sizeof value);
  return value;
}

template <typename Whole>
Variant WholeNumber(Whole value) {
  if (std::in_range<std::int32_t>(value)) return Variant::Long(static_cast<std::int32_t>(value));
  return Variant(static_cast<double>(value));
}

// The number that the shortest text of a Single spells.
Variant SingleNumber(float value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value).ptr;
  double number = value;
  std::from_chars(text.begin(), end, number);
  return Variant(number);
}

Variant OtherNumber(const VARIANT& value) {
  OwnedVariant number;
  Check(VariantChangeType(number.Receive(), const_cast<VARIANT*>(&value), 0, VT_R8));
  return Variant(number.get().dblVal);
}

// The bytes of an array of bytes, or of one of variants that hold numbers, which a script may make.
Variant::Bytes BytesOf(SAFEARRAY* array, VARTYPE elementType) {
  if (array == nullptr) return {};
  const bool isPlain = elementType == VT_UI1;
  if (SafeArrayGetDim(array) != 1 || (!isPlain && elementType != VT_VARIANT)) throw RuntimeError(error::kTypeMismatch);
  const std::size_t count = array->rgsabound[0].cElements;
  Variant::Bytes bytes(count);
  if (count == 0) return bytes;
  const ArrayData elements(array);
  Check(elements.result);
  if (isPlain) {
    std::memcpy(bytes.data(), elements.data, count);
  } else {
    const auto* const variants = static_cast<const VARIANT*>(elements.data);
    for (std::size_t i = 0; i < count; ++i) bytes[i] = FromCom(variants[i]).ToByte();
  }
  return bytes;
}

Variant FromObject(IUnknown* object, ObjectMeaning meaning) {
  if (object == nullptr) return Variant(Variant::ObjectRef());
  ComReference<IDispatch> dispatch;
  if (FAILED(object->QueryInterface(IID_IDispatch, dispatch.ReceiveVoid()))) {
    throw RuntimeError(error::kTypeMismatch);
  }
  if (meaning == ObjectMeaning::Context) return Variant(MakeContext(std::move(dispatch)));
  return DefaultValue(std::move(dispatch));
}

SAFEARRAY* NewArray(const Variant::Bytes& bytes) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (array == nullptr) throw std::bad_alloc();
  if (!bytes.empty()) std::memcpy(array->pvData, bytes.data(), bytes.size());
  return array;
}

VARIANT Plain(VARTYPE type) noexcept {
  VARIANT value{};
  value.vt = type;
  return value;
}

VARIANT_BOOL ToComBoolean(bool value) noexcept { return value ? VARIANT_TRUE : VARIANT_FALSE; }

float ToSingle(double value) {
  if (std::abs(value) > std::numeric_limits<float>::max()) throw RuntimeError(error::kOverflow);
  return static_cast<float>(value);
}

// The number of bytes of a type that is stored as it is; 0 for others.
std::size_t PlainSize(VARTYPE type) noexcept {
  switch (type) {
    case VT_UI1:
    case VT_I1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
      return 4;
    case VT_R8:
    case VT_DATE:
    case VT_CY:
    case VT_I8:
    case VT_UI8:
      return 8;
    default:
      return 0;
  }
}

}  // namespace

std::string TextOf(BSTR text) {
  if (text == nullptr) return {};
  auto converted = FromUtf16({reinterpret_cast<const char16_t*>(text), SysStringLen(text)});
  if (!converted) throw RuntimeError(error::kTypeMismatch);
  return *std::move(converted);
}

BSTR NewText(std::string_view text) {
  const BSTR made = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
  if (made == nullptr) throw std::bad_alloc();
  WriteText(made, text);
  return made;
}

bool IsLeftOut(const VARIANT& value) noexcept { return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND; }

Variant FromCom(const VARIANT& value, ObjectMeaning meaning) {
  if (IsLeftOut(value)) return Variant(Missing);
  const void* const data = DataOf(value);
  const VARTYPE type = TypeOf(value);
  if ((type & VT_ARRAY) != 0) return Variant(BytesOf(Read<SAFEARRAY*>(data), static_cast<VARTYPE>(type & ~VT_ARRAY)));
  switch (type) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Variant::Null();
    case VT_BOOL:
      return Variant(Read<VARIANT_BOOL>(data) != VARIANT_FALSE);
    case VT_UI1:
      return Variant(Read<std::uint8_t>(data));
    case VT_I1:
      return Variant::Integer(Read<std::int8_t>(data));
    case VT_I2:
      return Variant::Integer(Read<std::int16_t>(data));
    case VT_UI2:
      return WholeNumber(Read<std::uint16_t>(data));
    case VT_I4:
    case VT_INT:
      return WholeNumber(Read<std::int32_t>(data));
    case VT_UI4:
    case VT_UINT:
      return WholeNumber(Read<std::uint32_t>(data));
    case VT_I8:
      return WholeNumber(Read<std::int64_t>(data));
    case VT_UI8:
      return WholeNumber(Read<std::uint64_t>(data));
    case VT_R4:
      return SingleNumber(Read<float>(data));
    case VT_R8:
      return Variant(Read<double>(data));
    case VT_CY:
    case VT_DECIMAL:
      return OtherNumber(value);
    case VT_DATE:
      return Variant(DateTime::FromDays(Read<double>(data)));
    case VT_BSTR:
      return Variant(TextOf(Read<BSTR>(data)));
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return FromObject(Read<IUnknown*>(data), meaning);
    default:
      throw RuntimeError(error::kTypeMismatch);
  }
}

OwnedVariant ToCom(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::Null:
      return OwnedVariant(Plain(VT_NULL));
    case Variant::Type::Boolean:
      return ToComAs(value, VT_BOOL);
    case Variant::Type::Byte:
      return ToComAs(value, VT_UI1);
    case Variant::Type::Integer:
      return ToComAs(value, VT_I2);
    case Variant::Type::Long:
      return ToComAs(value, VT_I4);
    case Variant::Type::Double:
      return ToComAs(value, VT_R8);
    case Variant::Type::Date:
      return ToComAs(value, VT_DATE);
    case Variant::Type::String:
      return ToComAs(value, VT_BSTR);
    case Variant::Type::ByteArray:
      return ToComAs(value, VT_ARRAY | VT_UI1);
    default:  // the component returns no object
      return {};
  }
}

OwnedVariant ToComAs(const Variant& value, VARTYPE type) {
  OwnedVariant made;
  VARIANT& target = *made.Receive();  // filled in place: a copy right after the writes stalls the processor
  std::string scratch;
  switch (type) {
    case VT_BOOL:
      target.boolVal = ToComBoolean(value.ToBoolean());
      break;
    case VT_UI1:
      target.bVal = value.ToByte();
      break;
    case VT_I2:
      target.iVal = value.ToInteger();
      break;
    case VT_I4:
    case VT_INT:
      target.lVal = value.ToLong();
      break;
    case VT_R4:
      target.fltVal = ToSingle(value.ToDouble());
      break;
    case VT_R8:
      target.dblVal = value.ToDouble();
      break;
    case VT_DATE:
      target.date = value.ToDate().Days();
      break;
    case VT_BSTR:
      target.bstrVal = NewText(value.TextView(scratch));
      break;
    case VT_ARRAY | VT_UI1:
      target.parray = NewArray(value.ToBytes());
      break;
    case VT_I1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_CY:
    case VT_DECIMAL: {
      const OwnedVariant number = ToComAs(value, VT_R8);
      Check(VariantChangeType(&target, const_cast<VARIANT*>(&number.get()), 0, type));
      return made;
    }
    default:
      throw RuntimeError(error::kTypeMismatch);
  }
  target.vt = type;  // nothing is held before
  return made;
}

void Store(VARIANT& target, OwnedVariant value) noexcept {
  const VARTYPE type = TypeOf(target);
  if ((target.vt & VT_BYREF) == 0) {
    OwnedVariant(std::exchange(target, value.Release()));  // what the variable held is released last
  } else if (type == VT_BSTR) {
    SysFreeString(std::exchange(*target.pbstrVal, value.Release().bstrVal));
  } else if (type == (VT_ARRAY | VT_UI1)) {
    SafeArrayDestroy(std::exchange(*target.pparray, value.Release().parray));
  } else if (type == VT_DECIMAL) {
    const USHORT reserved = target.pdecVal->wReserved;
    *target.pdecVal = value.get().decVal;
    target.pdecVal->wReserved = reserved;
  } else {
    std::memcpy(target.byref, &value.get().llVal, PlainSize(type));
  }
}

}  // namespace oxaqrycln::com
