// module_path.h - where the library was loaded from.
#ifndef OXAQRYCLN_AUTOMATION_COM_MODULE_PATH_H_
#define OXAQRYCLN_AUTOMATION_COM_MODULE_PATH_H_

#include <string>

namespace oxaqrycln::com {

// The whole path of the library. Raises Internal error when the system does not say it.
std::wstring ModulePath();

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_MODULE_PATH_H_
