#include "values/variant.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

#include "values/errors.h"

namespace oxaqrycln {
namespace {

// Copies the first and the last word of a text, which may overlap.
template <typename Word>
void CopyEnds(char* to, const char* from, std::size_t size) noexcept {
  Word first;
  Word last;
  std::memcpy(&first, from, sizeof first);
  std::memcpy(&last, from + size - sizeof last, sizeof last);
  std::memcpy(to, &first, sizeof first);
  std::memcpy(to + size - sizeof last, &last, sizeof last);
}

// std::memmove, whose call takes longer than the copy of a short text.
void Copy(char* to, const char* from, std::size_t size) noexcept {
  if (size > 16) {
    std::memmove(to, from, size);
  } else if (size >= 8) {
    CopyEnds<std::uint64_t>(to, from, size);
  } else if (size >= 4) {
    CopyEnds<std::uint32_t>(to, from, size);
  } else if (size >= 2) {
    CopyEnds<std::uint16_t>(to, from, size);
  } else if (size == 1) {
    *to = *from;
  }
}

}  // namespace

Variant Variant::Null() noexcept {
  Variant null;
  null.value_.emplace<NullType>();
  return null;
}

std::string_view Variant::TypeName() const noexcept {
  static constexpr std::array<std::string_view, 12> kNames = {"Empty", "Null",    "Missing",   "Boolean",
                                                              "Byte",  "Integer", "Long",      "Double",
                                                              "Date",  "String",  "ByteArray", "Object"};
  return kNames[value_.index()];
}

void Variant::AssignText(std::string_view text) {
  auto* const held = std::get_if<std::string>(&value_);
  if (held != nullptr && held->size() == text.size()) {  // as in most columns of a list
    Copy(held->data(), text.data(), text.size());
  } else {
    BecomeText(text);
  }
}

void Variant::BecomeText(std::string_view text) {
  if (auto* const held = std::get_if<std::string>(&value_)) {
    held->assign(text);
  } else {
    value_.emplace<std::string>(text);
  }
}

bool Variant::SwapText(std::string& text) noexcept {
  auto* const held = std::get_if<std::string>(&value_);
  if (held != nullptr) held->swap(text);
  return held != nullptr;
}

void Variant::Replace(Variant& value) noexcept {
  auto* const held = std::get_if<std::string>(&value_);
  if (held == nullptr || !value.SwapText(*held)) value_ = std::move(value.value_);
}

void Variant::AppendText(std::string_view text) {
  if (auto* const held = std::get_if<std::string>(&value_)) {
    held->append(text);
  } else {
    AssignText(ToText().append(text));
  }
}

Variant::ObjectRef Variant::ToObject() const {
  const auto* object = std::get_if<ObjectRef>(&value_);
  if (object == nullptr) throw RuntimeError(error::kTypeMismatch);
  if (*object == nullptr) throw RuntimeError(error::kObjectNotSet);
  return *object;
}

const Variant::Bytes& Variant::ToBytes() const {
  const auto* bytes = std::get_if<Bytes>(&value_);
  if (bytes == nullptr) throw RuntimeError(error::kTypeMismatch);
  return *bytes;
}

std::optional<double> Variant::Number() const noexcept {
  return std::visit(
      [](const auto& held) -> std::optional<double> {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_arithmetic_v<Held> && !std::is_same_v<Held, bool>) {
          return static_cast<double>(held);
        } else {
          return std::nullopt;
        }
      },
      value_);
}

bool operator==(const Variant& left, const Variant& right) noexcept {
  if (left.value_.index() == right.value_.index()) return IsSame(left, right);
  const std::optional<double> number = left.Number();
  return number.has_value() && number == right.Number();
}

bool IsSame(const Variant& left, const Variant& right) noexcept {
  if (left.value_.index() != right.value_.index()) return false;
  return std::visit(
      [&](const auto& held) {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_empty_v<Held>) {
          return true;
        } else {
          return held == std::get<Held>(right.value_);
        }
      },
      left.value_);
}

}  // namespace oxaqrycln
