#include "tools/asphost/script/class_cache.h"

#include <utility>

namespace oxaqrycln::asphost {

namespace {
constexpr std::size_t kMostClasses = 100;
}

HRESULT ClassCache::Create(const std::wstring& name, REFIID interfaceId, void** object) {
  const auto known = classes_.find(name);
  if (known != classes_.end()) return known->second->CreateInstance(nullptr, interfaceId, object);
  CLSID id{};
  HRESULT result = CLSIDFromProgID(name.c_str(), &id);
  if (FAILED(result)) return result;
  ComReference<IClassFactory> factory;
  result = CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.ReceiveVoid());
  if (FAILED(result)) return result;
  result = factory->CreateInstance(nullptr, interfaceId, object);
  if (SUCCEEDED(result) && classes_.size() < kMostClasses) classes_[name] = std::move(factory);
  return result;
}

}  // namespace oxaqrycln::asphost
