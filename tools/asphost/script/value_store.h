// value_store.h - the named values of a session or of the application, whatever thread set them.
// Knows nothing of locks: the owner makes sure that one thread at a time uses a store.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_VALUE_STORE_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_VALUE_STORE_H_

#include <map>
#include <string>
#include <vector>

#include "tools/asphost/script/com_owners.h"

namespace oxaqrycln::asphost {

class ValueStore {
 public:
  // Empty for a name that has no value.
  OwnedVariant Get(const std::wstring& name) const;
  // Throws ScriptError for an object, which belongs to the thread of its page, and beyond 1000 values.
  void Set(const std::wstring& name, const VARIANT& value);
  void Remove(const std::wstring& name) { values_.erase(name); }
  void RemoveAll() { values_.clear(); }
  std::vector<std::wstring> Names() const;

 private:
  struct ByName {
    bool operator()(const std::wstring& left, const std::wstring& right) const noexcept;
  };
  std::map<std::wstring, OwnedVariant, ByName> values_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_VALUE_STORE_H_
