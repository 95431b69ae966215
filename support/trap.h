// trap.h - the one place where errors of a routine are caught: logged, and turned into the routine's failure value.
#ifndef OXAQRYCLN_SUPPORT_TRAP_H_
#define OXAQRYCLN_SUPPORT_TRAP_H_

#include <string_view>
#include <utility>

#include "support/log_writer.h"

namespace oxaqrycln {

// Runs body(result), where result starts as the failure value, and returns result, also when an error ended the body;
// then the component error line is written and failed(error) is called first. Raises nothing, not even an error of
// failed.
template <typename Result, typename Body, typename Failed>
Result Trap(const SessionLog& log, std::string_view routine, const Result& failure, Body&& body, Failed&& failed) {
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

template <typename Result, typename Body>
Result Trap(const SessionLog& log, std::string_view routine, const Result& failure, Body&& body) {
  return Trap(log, routine, failure, std::forward<Body>(body), [](const RuntimeError&) {});
}

// For a routine without a result: body() is run.
template <typename Body>
void Trap(const SessionLog& log, std::string_view routine, Body&& body) {
  Trap(log, routine, false, [&](bool& /*unused*/) { body(); });
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_SUPPORT_TRAP_H_
