// errors.h - the one exception type of the component, and the run-time error numbers in use.
// Foreign interfaces turn their own errors into RuntimeError in one place each.
#ifndef OXAQRYCLN_VALUES_ERRORS_H_
#define OXAQRYCLN_VALUES_ERRORS_H_

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace oxaqrycln {

// The run-time error numbers that the component raises.
namespace error {
inline constexpr std::int32_t kInvalidProcedureCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kOutOfStringSpace = 14;
inline constexpr std::int32_t kInternalError = 51;
inline constexpr std::int32_t kBadFileName = 52;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kFileAlreadyOpen = 55;
inline constexpr std::int32_t kDeviceInputOutput = 57;
inline constexpr std::int32_t kFileAlreadyExists = 58;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kInputPastEnd = 62;
inline constexpr std::int32_t kTooManyFiles = 67;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kPathFileAccess = 75;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kInvalidUseOfNull = 94;
inline constexpr std::int32_t kCannotCreateObject = 429;
inline constexpr std::int32_t kArgumentNotOptional = 449;
inline constexpr std::int32_t kWrongArgumentCount = 450;
}  // namespace error

// The customary description of a run-time error number;
// "Application-defined or object-defined error" for any other number.
std::string_view ErrorDescription(std::int32_t number) noexcept;

// An error of the component: a number and a description, both of which go into the log.
class RuntimeError : public std::exception {
 public:
  // With the customary description of the number.
  explicit RuntimeError(std::int32_t number);
  RuntimeError(std::int32_t number, std::string description);

  std::int32_t number() const noexcept { return number_; }
  const std::string& description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string description_;
};

// To be called in a catch block: the current exception as a RuntimeError. Exhausted memory becomes 7, any other foreign
// exception 51 with its own text.
RuntimeError CurrentError() noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_VALUES_ERRORS_H_
