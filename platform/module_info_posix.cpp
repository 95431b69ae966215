#include "platform/module_info.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace oxaqrycln {

namespace fs = std::filesystem;

ModuleInfo ThisModule() {
  Dl_info found{};
  link_map* map = nullptr;
  if (dladdr1(reinterpret_cast<const void*>(&ThisModule), &found, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) ==
      0) {
    return {};
  }
  // The main program has no name there but that of its call, which need not lead to it.
  std::error_code failed;
  const bool isProgram = map->l_name == nullptr || *map->l_name == '\0';
  const fs::path path = isProgram ? fs::read_symlink("/proc/self/exe", failed) : fs::absolute(map->l_name, failed);
  ModuleInfo module;
  module.fileName = path.filename().string();
  module.directory = path.parent_path().string();
  module.handle = reinterpret_cast<std::uintptr_t>(found.dli_fbase);
  return module;
}

void KeepThisModule() noexcept {}

std::int64_t CurrentThreadId() noexcept { return syscall(SYS_gettid); }

}  // namespace oxaqrycln
