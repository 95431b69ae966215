// variant.h - the value that every parameter of a public method is: one of the automation types.
// Text is single-byte text of the Windows-1252 code page and may contain any byte.
// Conversions follow the automation rules; see each for the error it raises.
#ifndef OXAQRYCLN_VALUES_VARIANT_H_
#define OXAQRYCLN_VALUES_VARIANT_H_

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "values/date_time.h"

namespace oxaqrycln {

// What a Variant may refer to: an object of the host or of the object registry.
class Object {
 public:
  virtual ~Object() = default;

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

// The type of an argument that the caller leaves out.
struct MissingType {};

class Variant {
 public:
  enum class Type { Empty, Null, Missing, Boolean, Byte, Integer, Long, Double, Date, String, ByteArray, Object };
  using Bytes = std::vector<std::uint8_t>;
  using ObjectRef = std::shared_ptr<oxaqrycln::Object>;

  Variant() noexcept = default;  // Empty
  Variant(MissingType) noexcept : value_(MissingType{}) {}
  Variant(bool value) noexcept : value_(value) {}
  Variant(std::uint8_t value) noexcept : value_(value) {}
  Variant(std::int16_t value) noexcept : value_(value) {}
  Variant(std::int32_t value) noexcept : value_(value) {}
  Variant(double value) noexcept : value_(value) {}
  // Any other whole number becomes a Long where it fits, else a Double, which is exact up to 2^53.
  Variant(unsigned value) noexcept { AssignWhole(value); }
  Variant(long value) noexcept { AssignWhole(value); }
  Variant(unsigned long value) noexcept { AssignWhole(value); }
  Variant(long long value) noexcept { AssignWhole(value); }
  Variant(unsigned long long value) noexcept { AssignWhole(value); }
  Variant(DateTime value) noexcept : value_(value) {}
  Variant(const char* text) : value_(std::string(text)) {}
  Variant(std::string_view text) : value_(std::string(text)) {}
  Variant(std::string text) noexcept : value_(std::move(text)) {}
  Variant(Bytes bytes) noexcept : value_(std::move(bytes)) {}
  Variant(ObjectRef object) noexcept : value_(std::move(object)) {}
  template <typename Derived>
  requires std::convertible_to<std::shared_ptr<Derived>, ObjectRef> Variant(std::shared_ptr<Derived> object)
  noexcept : value_(ObjectRef(std::move(object))) {}
  // An argument that is left out is Missing. Any other pointer would become True.
  Variant(std::nullptr_t) = delete;
  Variant(const void* pointer) = delete;

  Variant& operator=(MissingType) noexcept {
    value_.emplace<MissingType>();
    return *this;
  }

  static Variant Null() noexcept;
  static Variant Integer(std::int16_t value) noexcept { return Variant(value); }
  static Variant Long(std::int32_t value) noexcept { return Variant(value); }

  Type type() const noexcept { return static_cast<Type>(value_.index()); }
  // "Empty", "Long", "String" and so on.
  std::string_view TypeName() const noexcept;
  bool IsEmpty() const noexcept { return type() == Type::Empty; }
  bool IsNull() const noexcept { return type() == Type::Null; }
  bool IsMissing() const noexcept { return type() == Type::Missing; }

  // Conversions. Empty is False, 0, "" and the zero date; True is -1. Text to number takes blanks around, a sign, a
  // fraction and an exponent. Fractions are rounded to the nearest whole number, halves to the even one.
  // Raise Overflow for a value that does not fit, Type mismatch for one that cannot be converted, Invalid use of Null
  // for Null.
  bool ToBoolean() const;
  std::uint8_t ToByte() const;
  std::int16_t ToInteger() const;
  std::int32_t ToLong() const;
  double ToDouble() const;
  DateTime ToDate() const;

  // The text of the value in a concatenation: "" for Empty and Null, "True" and "False", the shortest decimal
  // form of a number, the general form of a date. Raises Type mismatch for Missing, byte arrays and objects.
  std::string ToText() const&;
  // The same for a value that is not needed any more: the text of a String without a copy.
  std::string ToText() &&;
  // The same without a copy for a String: a view of this value or of scratch.
  std::string_view TextView(std::string& scratch) const {
    const auto* const text = std::get_if<std::string>(&value_);
    return text != nullptr ? std::string_view(*text) : scratch = ToText();
  }

  // The object referred to; raises Type mismatch for another type and Object variable not set for no object.
  ObjectRef ToObject() const;

  // The bytes of a byte array; raises Type mismatch for another type.
  const Bytes& ToBytes() const;

  // Makes this a String of the text; reuses the memory of a String that it held.
  void AssignText(std::string_view text);
  // Exchanges the text of a String with text; false for any other type, which stays as it is.
  bool SwapText(std::string& text) noexcept;
  // The same as an assignment, but of two Strings value receives the memory of this one.
  void Replace(Variant& value) noexcept;
  // Adds to the end of a String; Empty becomes the text. Raises as ToText does for any other type.
  void AppendText(std::string_view text);

  // Same value. Numbers (Byte, Integer, Long, Double) are compared by value, whatever their types. Values of any other
  // type equal those of their own type only: True is not -1, a Date not the number of its days, Empty neither 0 nor "".
  // An object equals itself only.
  friend bool operator==(const Variant& left, const Variant& right) noexcept;
  // Same type and same value: Integer 1 is not the same as Long 1.
  friend bool IsSame(const Variant& left, const Variant& right) noexcept;

 private:
  template <typename Whole>
  void AssignWhole(Whole value) noexcept {
    if (std::in_range<std::int32_t>(value)) {
      value_ = static_cast<std::int32_t>(value);
    } else {
      value_ = static_cast<double>(value);
    }
  }
  // The value of a number; nothing for any other type.
  std::optional<double> Number() const noexcept;
  void BecomeText(std::string_view text);

  struct NullType {};
  // In the order of Type.
  std::variant<std::monostate, NullType, MissingType, bool, std::uint8_t, std::int16_t, std::int32_t, double, DateTime,
               std::string, Bytes, ObjectRef>
      value_;
};

// The argument left out: Init(Missing) is Init().
inline constexpr MissingType Missing{};

// The whole number that a text spells by the rules of Variant::ToLong, halves to even. Raises Type mismatch, Overflow.
std::int32_t TextToLong(std::string_view text);

// Declared again for callers that convert an argument.
bool IsSame(const Variant& left, const Variant& right) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_VARIANT_H_
