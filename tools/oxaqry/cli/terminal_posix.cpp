#include <unistd.h>

#include "tools/oxaqry/cli/run_environment.h"

namespace oxaqrycln::oxaqry {

Terminals StandardTerminals() noexcept {
  return {.in = isatty(STDIN_FILENO) == 1, .out = isatty(STDOUT_FILENO) == 1, .err = isatty(STDERR_FILENO) == 1};
}

}  // namespace oxaqrycln::oxaqry
