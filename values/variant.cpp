#include "values/variant.h"

#include <array>

#include "values/errors.h"

namespace oxaqrycln {

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
  if (auto* const held = std::get_if<std::string>(&value_)) {
    held->assign(text);
  } else {
    value_.emplace<std::string>(text);
  }
}

void Variant::AppendText(std::string_view text) {
  if (auto* const held = std::get_if<std::string>(&value_)) {
    held->append(text);
  } else {
    AssignText(ToText().append(text));
  }
}

std::string_view Variant::TextView(std::string& scratch) const {
  if (const auto* text = std::get_if<std::string>(&value_)) return *text;
  scratch = ToText();
  return scratch;
}

Variant::ObjectRef Variant::ToObject() const {
  const auto* object = std::get_if<ObjectRef>(&value_);
  if (object == nullptr) throw RuntimeError(error::kTypeMismatch);
  if (*object == nullptr) throw RuntimeError(error::kObjectNotSet);
  return *object;
}

bool operator==(const Variant& left, const Variant& right) noexcept {
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
