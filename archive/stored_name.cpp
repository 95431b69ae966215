#include "archive/stored_name.h"

#include "platform/files/files.h"
#include "values/errors.h"

namespace oxaqrycln {

std::string StoredName(std::string_view name) {
  const std::string_view last = LastPathPart(name);
  if (!IsPlainFileName(last)) throw RuntimeError(error::kBadFileName);
  return std::string(last);
}

}  // namespace oxaqrycln
