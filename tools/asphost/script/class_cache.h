// class_cache.h - the classes whose objects the pages of one thread have made, found by their names.
// Finding a class takes the system much longer than making an object of it. One per thread, of its apartment.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_CLASS_CACHE_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_CLASS_CACHE_H_

#include <map>
#include <string>

#include "tools/asphost/script/com_owners.h"

namespace oxaqrycln::asphost {

class ClassCache {
 public:
  // Makes an object of a class that runs in this process.
  HRESULT Create(const std::wstring& name, REFIID interfaceId, void** object);

 private:
  std::map<std::wstring, ComReference<IClassFactory>> classes_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_CLASS_CACHE_H_
