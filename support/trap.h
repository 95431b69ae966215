// trap.h - the one place where errors of a routine are caught: logged, and turned into the routine's failure value.
#ifndef OXAQRYCLN_SUPPORT_TRAP_H_
#define OXAQRYCLN_SUPPORT_TRAP_H_

#include <source_location>
#include <string_view>
#include <utility>

#include "support/log_writer.h"

namespace oxaqrycln {

// The name of a method for the log, extracted from its signature only when it is needed.
class MethodName {
 public:
  explicit MethodName(const std::source_location& where) noexcept : signature_(where.function_name()) {}
  // "HelloWorld" of "std::string clsQuery::HelloWorld()".
  operator std::string_view() const noexcept {  // NOLINT: used as the name
    const std::string_view name = std::string_view(signature_).substr(0, std::string_view(signature_).find('('));
    return name.substr(name.rfind(':') + 1);
  }

 private:
  const char* signature_;
};

// routine is a std::string_view or a MethodName. Runs body(result), where result starts as the failure value, and
// returns result, also when an error ended the body; then the component error line is written and failed(error) is
// called first. Raises nothing, not even an error of failed.
template <typename Name, typename Result, typename Body, typename Failed>
Result Trap(const SessionLog& log, const Name& routine, const Result& failure, Body&& body, Failed&& failed) {
  Result result(failure);
  try {
    body(result);
  } catch (...) {
    const RuntimeError error = CurrentError();
    log.WriteProcessingError(routine, error);
    try {
      failed(error);
    } catch (...) {  // no memory is left for the error text
    }
  }
  return result;
}

template <typename Name, typename Result, typename Body>
Result Trap(const SessionLog& log, const Name& routine, const Result& failure, Body&& body) {
  return Trap(log, routine, failure, std::forward<Body>(body), [](const RuntimeError&) {});
}

// For a routine without a result: body() is run.
template <typename Name, typename Body>
void Trap(const SessionLog& log, const Name& routine, Body&& body) {
  Trap(log, routine, false, [&](bool& /*unused*/) { body(); });
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_SUPPORT_TRAP_H_
