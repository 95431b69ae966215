// query_object.h - one clsQuery as an automation object: IDispatch over the method table.
// Belongs to the thread that made it; owned by its references.
#ifndef OXAQRYCLN_AUTOMATION_COM_QUERY_OBJECT_H_
#define OXAQRYCLN_AUTOMATION_COM_QUERY_OBJECT_H_

#include <ole2.h>

#include <atomic>

#include "automation/com/argument_list.h"
#include "automation/method_table.h"

namespace oxaqrycln::com {

class QueryObject final : public IDispatch {
 public:
  // With one reference, which belongs to the caller.
  QueryObject();
  QueryObject(const QueryObject&) = delete;
  QueryObject& operator=(const QueryObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** information) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* numbers) override;
  // RPC_E_WRONG_THREAD from another thread, RPC_E_CALL_REJECTED while a call of the instance runs. The methods' own
  // failures are results; see argument_list.h for the errors of arguments.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID reserved, LCID locale, WORD access, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* details, UINT* wrongArgument) override;

 private:
  ~QueryObject() = default;
  HRESULT Dispatch(DISPID number, WORD access, const DISPPARAMS& parameters, VARIANT* result, UINT* wrongArgument);

  clsQuery query_;
  ArgumentList arguments_;
  const DWORD thread_;
  std::atomic<ULONG> references_{1};
  bool isRunning_ = false;
};

}  // namespace oxaqrycln::com

#endif  // OXAQRYCLN_AUTOMATION_COM_QUERY_OBJECT_H_
