#include "values/errors.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace oxaqrycln {
namespace {

struct Description {
  std::int32_t number;
  std::string_view text;
};
constexpr Description kDescriptions[] = {
    {5, "Invalid procedure call or argument"},
    {6, "Overflow"},
    {7, "Out of memory"},
    {9, "Subscript out of range"},
    {13, "Type mismatch"},
    {14, "Out of string space"},
    {51, "Internal error"},
    {52, "Bad file name or number"},
    {53, "File not found"},
    {55, "File already open"},
    {57, "Device I/O error"},
    {58, "File already exists"},
    {61, "Disk full"},
    {62, "Input past end of file"},
    {67, "Too many files"},
    {70, "Permission denied"},
    {75, "Path/File access error"},
    {76, "Path not found"},
    {91, "Object variable or With block variable not set"},
    {94, "Invalid use of Null"},
    {429, "ActiveX component can't create object"},
    {449, "Argument not optional"},
    {450, "Wrong number of arguments or invalid property assignment"},
};

}  // namespace

std::string_view ErrorDescription(std::int32_t number) noexcept {
  const auto* const known = std::ranges::find(kDescriptions, number, &Description::number);
  return known == std::end(kDescriptions) ? "Application-defined or object-defined error" : known->text;
}

RuntimeError::RuntimeError(std::int32_t number) : RuntimeError(number, std::string(ErrorDescription(number))) {}

RuntimeError::RuntimeError(std::int32_t number, std::string description)
    : number_(number), description_(std::move(description)) {}

RuntimeError CurrentError() noexcept {
  try {
    try {
      throw;
    } catch (const RuntimeError& caught) {
      return caught;
    } catch (const std::bad_alloc&) {
      return RuntimeError(error::kOutOfMemory);
    } catch (const std::exception& caught) {
      return {error::kInternalError, caught.what()};
    } catch (...) {
      return RuntimeError(error::kInternalError);
    }
  } catch (...) {  // no memory for the description; this one needs none
    return RuntimeError(error::kOutOfMemory);
  }
}

}  // namespace oxaqrycln
