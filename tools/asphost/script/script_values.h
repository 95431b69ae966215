// script_values.h - values of scripts made from and turned into those of C++, and texts from and to a code page.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_VALUES_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_VALUES_H_

#include <ole2.h>

#include <string>
#include <string_view>

#include "tools/asphost/script/com_owners.h"

namespace oxaqrycln::asphost {

// An error that a script sees: a number of the VBScript run time and its description.
struct ScriptError {
  long number;
  std::wstring text;
};
inline constexpr long kIllegalCall = 5;
inline constexpr long kTypeMismatch = 13;
inline constexpr long kCannotCreate = 429;
inline constexpr long kNotSupported = 438;
inline constexpr long kWrongArgumentCount = 450;

// Throws std::bad_alloc or ScriptError.
void Check(HRESULT result, long number = kIllegalCall);

// Bytes that the code page does not have become U+FFFD or a control character.
std::wstring ToWide(std::string_view bytes, unsigned codePage);
// A character that the code page does not have becomes "?", never one that looks like it.
std::string ToBytes(std::wstring_view text, unsigned codePage);

OwnedVariant TextValue(std::wstring_view text);
OwnedVariant NumberValue(long number);
OwnedVariant BooleanValue(bool value);
OwnedVariant BytesValue(std::string_view bytes);
// Adds a reference.
OwnedVariant ObjectValue(IDispatch* object);
// A copy without references to variables.
OwnedVariant CopyOf(const VARIANT& value);

// Empty and Null are ""; an object counts as its default value. Throws ScriptError (type mismatch).
std::wstring TextOf(const VARIANT& value);
long NumberOf(const VARIANT& value);
bool BooleanOf(const VARIANT& value);
DATE DateOf(const VARIANT& value);
// The bytes of an array of bytes.
std::string BytesOf(const VARIANT& value);
// Whether the value is an object or an array that holds one.
bool HoldsObject(const VARIANT& value);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SCRIPT_VALUES_H_
