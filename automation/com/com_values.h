// com_values.h - conversion between the component's values and those of automation.
// Text is converted strictly: a character outside of the code page is a type mismatch.
#ifndef OXAQRYCLN_AUTOMATION_COM_COM_VALUES_H_
#define OXAQRYCLN_AUTOMATION_COM_COM_VALUES_H_

#include <ole2.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "automation/com/com_owners.h"
#include "values/code_page.h"
#include "values/variant.h"

namespace oxaqrycln::com {

// What an object given as an argument means.
enum class ObjectMeaning {
  Value,    // its default property; an object without one stays an object that nothing can be read from
  Context,  // the page's scripting context
};

// The value, also of a typed reference; a VARIANT that refers to another one is no value. Types that the component does
// not have become those that hold them: a currency is a Double. Raises Type mismatch, Overflow.
Variant FromCom(const VARIANT& value, ObjectMeaning meaning = ObjectMeaning::Value);

// The value in the type that it has, and in another one, by the automation rules. Raise Type mismatch, Overflow, Out of
// memory, Invalid use of Null.
OwnedVariant ToCom(const Variant& value);
OwnedVariant ToComAs(const Variant& value, VARTYPE type);

// Replaces what a typed reference (VT_BYREF) refers to by a value of its type, or a whole VARIANT.
void Store(VARIANT& target, OwnedVariant value) noexcept;

bool IsLeftOut(const VARIANT& value) noexcept;

std::string TextOf(BSTR text);
BSTR NewText(std::string_view text);
// Replaces the characters of a text of the same length.
inline void WriteText(BSTR target, std::string_view text) noexcept {
  ToUtf16(text, reinterpret_cast<char16_t*>(target));
}

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_COM_VALUES_H_
