// com_owners.h - the owners of references, values and arrays, shared with the automation server.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_COM_OWNERS_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_COM_OWNERS_H_

#include "automation/com/com_owners.h"

namespace oxaqrycln::asphost {

using com::ArrayData;
using com::ComReference;
using com::OwnedVariant;

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_COM_OWNERS_H_
