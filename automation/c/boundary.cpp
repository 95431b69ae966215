#include "automation/c/boundary.h"

#include <algorithm>
#include <array>
#include <new>
#include <string>

#include "component/version.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::c {
namespace {

constexpr std::int32_t kInterfaceNumber = 1;

// Has no destructor and needs no allocation.
struct LastError {
  std::array<char, 480> text{};
  std::size_t position = 0;
};
constinit thread_local LastError lastError;

oxaqry_code CodeOf(std::int32_t number) noexcept {
  switch (number) {
    case error::kInvalidProcedureCall:
    case error::kOverflow:
    case error::kTypeMismatch:
    case error::kObjectNotSet:
    case error::kInvalidUseOfNull:
      return OXAQRY_E_TYPE;
    case error::kArgumentNotOptional:
    case error::kWrongArgumentCount:
      return OXAQRY_E_COUNT;
    case error::kOutOfMemory:
      return OXAQRY_E_MEMORY;
    default:
      return OXAQRY_E_INTERNAL;
  }
}

}  // namespace

std::int32_t Fail(oxaqry_code code, std::initializer_list<std::string_view> pieces, std::size_t position) noexcept {
  char* end = lastError.text.data();
  char* const last = end + lastError.text.size() - 1;
  for (const std::string_view piece : pieces) {
    auto size = std::min(piece.size(), static_cast<std::size_t>(last - end));
    // A character is not cut in its middle.
    while (size > 0 && size < piece.size() && (static_cast<std::uint8_t>(piece[size]) & 0xC0U) == 0x80U) --size;
    end = std::copy_n(piece.data(), size, end);
  }
  *end = '\0';
  std::replace(lastError.text.data(), end, '\0', ' ');
  lastError.position = position;
  return code;
}

std::int32_t IsNull(std::string_view name) noexcept { return Fail(OXAQRY_E_ARGUMENT, {name, " is NULL"}); }

std::int32_t IsInUse() noexcept {
  return Fail(OXAQRY_E_BUSY, {"a running call uses the handle, or a value that is written is given twice"});
}

std::int32_t IsNoEncoding() noexcept { return Fail(OXAQRY_E_ARGUMENT, {"there is no such encoding"}); }

std::int32_t IsBadText(std::string_view utf8) {
  const std::size_t place = PlaceOfForeignCharacter(utf8);
  return Fail(OXAQRY_E_TEXT, {"character ", std::to_string(place), " is not UTF-8, or has no place in Windows-1252"},
              place);
}

std::int32_t CurrentCode() noexcept {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return Fail(CodeOf(error.number()), {error.description()});
  } catch (const std::bad_alloc&) {
    return Fail(OXAQRY_E_MEMORY, {"out of memory"});
  } catch (const std::exception& error) {
    return Fail(OXAQRY_E_INTERNAL, {error.what()});
  } catch (...) {
    return Fail(OXAQRY_E_INTERNAL, {"an unknown error"});
  }
}

}  // namespace oxaqrycln::c

using namespace oxaqrycln;

int32_t oxaqry_abi_version() { return c::kInterfaceNumber; }

const char* oxaqry_version() { return kVersionText; }

const char* oxaqry_last_error() { return c::lastError.text.data(); }

int32_t oxaqry_error_position(size_t* position) {
  if (position == nullptr) return c::IsNull("position");
  *position = c::lastError.position;
  return OXAQRY_OK;
}
