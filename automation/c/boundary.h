// boundary.h - the one place where errors become codes of the C interface, and the text of a thread's last one.
#ifndef OXAQRYCLN_AUTOMATION_C_BOUNDARY_H_
#define OXAQRYCLN_AUTOMATION_C_BOUNDARY_H_

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "automation/c/oxaqrycln.h"

namespace oxaqrycln::c {

// Keeps the text, made of pieces in UTF-8 and cut off when it is long, as the thread's last error; allocates nothing.
// position: of a wrong character. Returns the code.
std::int32_t Fail(oxaqry_code code, std::initializer_list<std::string_view> pieces, std::size_t position = 0) noexcept;

// To be called in a catch block: keeps the current error, and returns its code.
std::int32_t CurrentCode() noexcept;

// Runs body() and returns its code, or that of the error that it raised. Raises nothing.
template <typename Body>
std::int32_t Guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return CurrentCode();
  }
}

// Writes what the caller asks for, unless the pointer is null.
template <typename Target, typename Source>
void Give(Target* target, Source value) noexcept {
  if (target != nullptr) *target = static_cast<Target>(value);
}
inline void GiveText(const char** text, std::size_t* length, std::string_view given) noexcept {
  Give(text, given.data());
  Give(length, given.size());
}

// The commonest ones, which would slow their callers down if they were expanded there.
std::int32_t IsNull(std::string_view name) noexcept;  // a pointer that must not be
std::int32_t IsInUse() noexcept;                      // a handle, by a running call
std::int32_t IsNoEncoding() noexcept;
std::int32_t IsBadText(std::string_view utf8);  // has a character without a place in the code page, or is malformed

}  // namespace oxaqrycln::c

#endif  // OXAQRYCLN_AUTOMATION_C_BOUNDARY_H_
