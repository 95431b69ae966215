// terminal.h - whether a person sits at the standard streams.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TERMINAL_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TERMINAL_H_

#include "tools/oxaqry/surroundings.h"

namespace oxaqrycln {

Terminals StandardTerminals() noexcept;

// A limit on the size of files then shows as a full disk, not as a signal that ends the process.
void TakeFileLimitsAsErrors();

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TERMINAL_H_
