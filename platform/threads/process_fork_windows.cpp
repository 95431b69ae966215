#include "platform/threads/process_fork.h"

namespace oxaqrycln {

std::uint32_t ForkCount() noexcept { return 0; }

void WatchForks(void (* /*before*/)(), void (* /*inParent*/)(), void (* /*inChild*/)()) {}

}  // namespace oxaqrycln
