// scripting_objects.h - objects of the host that a script passes as arguments.
#ifndef OXAQRYCLN_AUTOMATION_COM_SCRIPTING_OBJECTS_H_
#define OXAQRYCLN_AUTOMATION_COM_SCRIPTING_OBJECTS_H_

#include <ole2.h>

#include "automation/com/com_owners.h"
#include "values/variant.h"

namespace oxaqrycln::com {

// The page's scripting context: its properties Request, Request.TotalBytes and Request.BinaryRead are read by name when
// the component asks for them.
Variant::ObjectRef MakeContext(ComReference<IDispatch> context);

// The value of the default property. An object without one, or whose value is an object again, stays an object, from
// which the component reads nothing. Raises as FromCom does for the value.
Variant DefaultValue(ComReference<IDispatch> object);

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_SCRIPTING_OBJECTS_H_
