// module_info.h - the path and handle of the component's module, and the id of the running thread.
#ifndef OXAQRYCLN_PLATFORM_MODULE_INFO_H_
#define OXAQRYCLN_PLATFORM_MODULE_INFO_H_

#include <cstdint>
#include <string>

namespace oxaqrycln {

struct ModuleInfo {
  std::string directory;  // absolute, without a separator at its end
  std::string fileName;
  std::uintptr_t handle = 0;  // where the module is loaded
};

// The library or program that contains this code; empty names when the system does not provide them.
ModuleInfo ThisModule();
// Keeps the module in memory until the process ends: threads that look up names or talk to databases may run in it
// longer than any object lives. Where the build fixes that (-z nodelete), it does nothing.
void KeepThisModule() noexcept;
std::int64_t CurrentThreadId() noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_PLATFORM_MODULE_INFO_H_
