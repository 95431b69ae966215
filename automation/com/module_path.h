// module_path.h - where the library was loaded from, and a hold on it.
#ifndef OXAQRYCLN_AUTOMATION_COM_MODULE_PATH_H_
#define OXAQRYCLN_AUTOMATION_COM_MODULE_PATH_H_

#include <string>

namespace oxaqrycln::com {

// The whole path of the library. Raises Internal error when the system does not say it.
std::wstring ModulePath();

// Keeps the library in memory until the process ends: threads that look up names or talk to databases may run in it
// longer than any object lives.
void StayLoaded() noexcept;

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_MODULE_PATH_H_
