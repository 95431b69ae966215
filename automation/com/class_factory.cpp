#include "automation/com/class_factory.h"

#include "automation/com/boundary.h"
#include "automation/com/com_owners.h"
#include "automation/com/query_object.h"

namespace oxaqrycln::com {
namespace {

class ClassFactory final : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    const bool isKnown = interfaceId == IID_IUnknown || interfaceId == IID_IClassFactory;
    *object = isKnown ? this : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return Guarded([&] {
      ComReference<QueryObject> made;
      *made.Receive() = new QueryObject;  // NOLINT: owned by its references
      return made->QueryInterface(interfaceId, object);
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) override { return S_OK; }
};

}  // namespace

IClassFactory& TheClassFactory() noexcept {
  static ClassFactory factory;
  return factory;
}

}  // namespace oxaqrycln::com
