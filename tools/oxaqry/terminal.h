// terminal.h - whether a person sits at the standard streams.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TERMINAL_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TERMINAL_H_

#include "tools/oxaqry/surroundings.h"

namespace oxaqrycln {

Terminals StandardTerminals() noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TERMINAL_H_
