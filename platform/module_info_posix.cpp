#include "platform/module_info.h"

#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/files.h"

namespace oxaqrycln {

ModuleInfo ThisModule() {
  Dl_info found{};
  if (dladdr(reinterpret_cast<const void*>(&ThisModule), &found) == 0 || found.dli_fname == nullptr) return {};
  const std::string path = found.dli_fname;
  ModuleInfo module;
  module.fileName = LastPathPart(path);
  const std::size_t directoryLength = path.size() - module.fileName.size();
  module.directory = directoryLength > 1 ? path.substr(0, directoryLength - 1) : ".";
  module.handle = reinterpret_cast<std::uintptr_t>(found.dli_fbase);
  return module;
}

std::int64_t CurrentThreadId() noexcept { return syscall(SYS_gettid); }

}  // namespace oxaqrycln
