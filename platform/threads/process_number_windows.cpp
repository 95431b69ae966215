#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include "platform/threads/process_number.h"

namespace oxaqrycln {

// The system counts in steps of four.
std::size_t ProcessNumber() noexcept { return GetCurrentProcessId() / 4; }

}  // namespace oxaqrycln
