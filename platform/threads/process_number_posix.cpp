#include <unistd.h>

#include "platform/threads/process_number.h"

namespace oxaqrycln {

std::size_t ProcessNumber() noexcept { return static_cast<std::size_t>(getpid()); }

}  // namespace oxaqrycln
