#include "values/errors.h"

#include <new>
#include <utility>

namespace oxaqrycln {

std::string_view ErrorDescription(std::int32_t number) noexcept {
  switch (number) {
    case 5:
      return "Invalid procedure call or argument";
    case 6:
      return "Overflow";
    case 7:
      return "Out of memory";
    case 9:
      return "Subscript out of range";
    case 13:
      return "Type mismatch";
    case 14:
      return "Out of string space";
    case 51:
      return "Internal error";
    case 52:
      return "Bad file name or number";
    case 53:
      return "File not found";
    case 55:
      return "File already open";
    case 57:
      return "Device I/O error";
    case 58:
      return "File already exists";
    case 61:
      return "Disk full";
    case 62:
      return "Input past end of file";
    case 67:
      return "Too many files";
    case 70:
      return "Permission denied";
    case 75:
      return "Path/File access error";
    case 76:
      return "Path not found";
    case 91:
      return "Object variable or With block variable not set";
    case 94:
      return "Invalid use of Null";
    case 429:
      return "ActiveX component can't create object";
    case 449:
      return "Argument not optional";
    case 450:
      return "Wrong number of arguments or invalid property assignment";
    default:
      return "Application-defined or object-defined error";
  }
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
