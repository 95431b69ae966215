// error_of.h - the run-time error that a call raises.
#ifndef OXAQRYCLN_TESTS_SUPPORT_ERROR_OF_H_
#define OXAQRYCLN_TESTS_SUPPORT_ERROR_OF_H_

#include <cstdint>

#include "values/errors.h"

namespace oxaqrycln::testing {

// Its number, 0 without one.
template <typename Call>
std::int32_t ErrorOf(Call&& call) {
  try {
    call();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number();
  }
}

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SUPPORT_ERROR_OF_H_
