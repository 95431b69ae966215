#include "tools/asphost/script/script_engine.h"

// The interfaces of the engine are defined after those of automation.
#include <activscp.h>

#include <array>
#include <cstdio>

#include "tools/asphost/script/script_values.h"

namespace oxaqrycln::asphost {
namespace {

constexpr const wchar_t* kGlobalName = L"Page";

class TextOwner {
 public:
  TextOwner() = default;
  ~TextOwner() { SysFreeString(text); }
  TextOwner(const TextOwner&) = delete;
  TextOwner& operator=(const TextOwner&) = delete;

  BSTR text = nullptr;
};

ScriptFailure Describe(IActiveScriptError& error) {
  ScriptFailure failure;
  EXCEPINFO details{};
  DWORD context = 0;
  ULONG line = 0;
  LONG column = 0;
  if (SUCCEEDED(error.GetSourcePosition(&context, &line, &column))) failure.line = line;
  if (FAILED(error.GetExceptionInfo(&details))) details = {};
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "%08lX", static_cast<unsigned long>(details.scode));
  const std::wstring text(details.bstrDescription, details.bstrDescription + SysStringLen(details.bstrDescription));
  failure.text = (text.empty() ? "script error" : ToBytes(text, CP_UTF8)) + " (" + number.data() + ")";
  SysFreeString(details.bstrSource);
  SysFreeString(details.bstrDescription);
  SysFreeString(details.bstrHelpFile);
  return failure;
}

// What the engine asks of its host. Lives on the stack of RunScript, which closes the engine first.
class EngineSite : public IActiveScriptSite {
 public:
  explicit EngineSite(IDispatch& global) : global_(global) {}
  virtual ~EngineSite() = default;

  std::optional<ScriptFailure> failure;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool isKnown = id == IID_IUnknown || id == __uuidof(IActiveScriptSite);
    *object = isKnown ? this : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE GetLCID(LCID* locale) override {
    *locale = GetUserDefaultLCID();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD wanted, IUnknown** object, ITypeInfo** type) override {
    if (type != nullptr) *type = nullptr;
    if (object == nullptr || (wanted & SCRIPTINFO_IUNKNOWN) == 0) return S_OK;
    global_.AddRef();
    *object = &global_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
    if (!failure) failure = Describe(*error);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

 private:
  IDispatch& global_;
};

void CheckEngine(HRESULT result) {
  if (FAILED(result)) throw ScriptError{kCannotCreate, L"The VBScript engine of the system does not work"};
}

}  // namespace

std::optional<ScriptFailure> RunScript(ClassCache& classes, const std::wstring& statements, IDispatch& global) {
  EngineSite site(global);
  ComReference<IActiveScript> engine;
  ComReference<IActiveScriptParse> parser;
  CheckEngine(classes.Create(L"VBScript", __uuidof(IActiveScript), engine.ReceiveVoid()));
  CheckEngine(engine->QueryInterface(__uuidof(IActiveScriptParse), parser.ReceiveVoid()));
  CheckEngine(parser->InitNew());
  CheckEngine(engine->SetScriptSite(&site));
  CheckEngine(engine->AddNamedItem(kGlobalName, SCRIPTITEM_ISVISIBLE | SCRIPTITEM_GLOBALMEMBERS));
  CheckEngine(engine->SetScriptState(SCRIPTSTATE_STARTED));
  EXCEPINFO details{};
  const HRESULT result = parser->ParseScriptText(statements.c_str(), nullptr, nullptr, nullptr, 0, 0,
                                                 SCRIPTTEXT_ISVISIBLE, nullptr, &details);
  engine->Close();
  if (FAILED(result) && !site.failure) site.failure = ScriptFailure{0, "the engine failed without saying where"};
  return site.failure;
}

}  // namespace oxaqrycln::asphost
