// boundary.h - the one place where errors become results of automation.
#ifndef OXAQRYCLN_AUTOMATION_COM_BOUNDARY_H_
#define OXAQRYCLN_AUTOMATION_COM_BOUNDARY_H_

#include <ole2.h>

namespace oxaqrycln::com {

// To be called in a catch block: the result that tells a script the number of the current error.
HRESULT CurrentResult() noexcept;

// Runs body() and returns its result, or that of the error that it raised. Raises nothing.
template <typename Body>
HRESULT Guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return CurrentResult();
  }
}

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_BOUNDARY_H_
