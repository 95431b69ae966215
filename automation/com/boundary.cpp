#include "automation/com/boundary.h"

#include "values/errors.h"

namespace oxaqrycln::com {

HRESULT CurrentResult() noexcept {
  switch (const RuntimeError error = CurrentError(); error.number()) {
    case error::kOverflow:
      return DISP_E_OVERFLOW;
    case error::kOutOfMemory:
      return E_OUTOFMEMORY;
    case error::kTypeMismatch:
    case error::kInvalidUseOfNull:  // automation cannot convert Null
      return DISP_E_TYPEMISMATCH;
    case error::kArgumentNotOptional:
      return DISP_E_PARAMNOTOPTIONAL;
    case error::kWrongArgumentCount:
      return DISP_E_BADPARAMCOUNT;
    default:
      return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, error.number());
  }
}

}  // namespace oxaqrycln::com
