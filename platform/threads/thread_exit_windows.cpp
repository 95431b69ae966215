#include "platform/threads/thread_exit.h"

namespace oxaqrycln {

void AtThreadExit(void (* /*release*/)(void*) noexcept, void* /*what*/) {}

}  // namespace oxaqrycln
