// How a host gets at the class: registered, by a manifest, and through the functions of the library.
#include <gtest/gtest.h>
#include <windows.h>
// psapi.h follows windows.h.
#include <psapi.h>

#include <string>

#include "tests/automation/com/automation_object.h"

namespace oxaqrycln::testing {
namespace {

// The context of a manifest, or of the one that a library holds, while it lives.
class ManifestContext {
 public:
  ManifestContext(const std::wstring& file, bool isLibrary) {
    ACTCTXW context{};
    context.cbSize = sizeof context;
    context.lpSource = file.c_str();
    if (isLibrary) {
      context.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID;
      context.lpResourceName = MAKEINTRESOURCEW(1);
    }
    handle_ = CreateActCtxW(&context);
    isActive = handle_ != INVALID_HANDLE_VALUE && ActivateActCtx(handle_, &cookie_) != FALSE;
  }
  ~ManifestContext() {
    if (isActive) DeactivateActCtx(0, cookie_);
    if (handle_ != INVALID_HANDLE_VALUE) ReleaseActCtx(handle_);
  }
  ManifestContext(const ManifestContext&) = delete;
  ManifestContext& operator=(const ManifestContext&) = delete;

  bool isActive = false;

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
};

std::wstring Library() { return Setting(L"OXAQRYCLN_TEST_LIBRARY"); }

std::wstring Manifest() { return Library().substr(0, Library().size() - 3) + L"manifest"; }

TEST(Unregistered, TheClassIsUnknownWithoutAManifest) {
  const ComApartment apartment;
  EXPECT_EQ(AutomationObject().made(), REGDB_E_CLASSNOTREG);
}

TEST(Unregistered, AManifestMakesTheClassKnown) {
  const ComApartment apartment;
  for (const bool isLibrary : {false, true}) {
    const ManifestContext context(isLibrary ? Library() : Manifest(), isLibrary);
    ASSERT_TRUE(context.isActive) << isLibrary << ' ' << GetLastError();
    for (const wchar_t* program : {L"OXAQryCln.clsQuery", L"OXAQryCln.clsQuery.1"}) {
      // An identifier that stands for the class in this context.
      CLSID id{};
      EXPECT_EQ(CLSIDFromProgID(program, &id), S_OK) << isLibrary;
      com::ComReference<IDispatch> made;
      EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, made.ReceiveVoid()), S_OK);
    }
    const AutomationObject page;
    ASSERT_EQ(page.made(), S_OK) << isLibrary;
    EXPECT_EQ(TextOf(page.Call(L"HelloWorld").result.get()), L"Hello World!") << isLibrary;
  }
}

TEST(Activation, BothProgramIdentifiersNameTheClass) {
  for (const wchar_t* program : {L"OXAQryCln.clsQuery", L"OXAQryCln.clsQuery.1"}) {
    CLSID id{};
    EXPECT_EQ(CLSIDFromProgID(program, &id), S_OK);
    EXPECT_EQ(id, com::IdOf(com::kClassId));
  }
}

TEST(Activation, TheRegisteredTypeLibraryDescribesEveryMemberUnderItsNumber) {
  const ComApartment apartment;
  com::ComReference<ITypeLib> library;
  ASSERT_EQ(LoadRegTypeLib(com::IdOf(com::kLibraryId), com::kLibraryMajor, com::kLibraryMinor, 0, library.Receive()),
            S_OK);
  const AutomationObject page;
  com::ComReference<ITypeInfo> information;
  ASSERT_EQ(page.get()->GetTypeInfo(0, 0, information.Receive()), S_OK);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(information->GetTypeAttr(&attributes), S_OK);
  const int count = attributes->cFuncs + attributes->cVars;
  information->ReleaseTypeAttr(attributes);
  EXPECT_EQ(count, 100);
  for (DISPID number = 1; number <= count; ++number) {
    BSTR name = nullptr;
    ASSERT_EQ(information->GetDocumentation(number, &name, nullptr, nullptr, nullptr), S_OK) << number;
    EXPECT_EQ(page.NumberOf(name), number);
    SysFreeString(name);
  }
}

TEST(Activation, AnObjectHasTheInterfacesOfAutomationOnly) {
  const ComApartment apartment;
  const AutomationObject page;
  com::ComReference<IUnknown> found;
  EXPECT_EQ(page.get()->QueryInterface(com::IdOf(com::kInterfaceId), found.ReceiveVoid()), S_OK);
  void* none = &found;
  EXPECT_EQ(page.get()->QueryInterface(IID_IPersist, &none), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
}

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

template <typename Function>
Function Find(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

TEST(Activation, TheLibraryRefusesOtherClassesAndAggregation) {
  const ComApartment apartment;
  const HMODULE library = LoadLibraryW(Library().c_str());
  ASSERT_NE(library, nullptr);
  const auto find = Find<GetClassObject>(library, "DllGetClassObject");
  void* object = library;
  EXPECT_EQ(find(IID_IDispatch, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
  com::ComReference<IClassFactory> factory;
  ASSERT_EQ(find(com::IdOf(com::kClassId), IID_IClassFactory, factory.ReceiveVoid()), S_OK);
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPersist, &object), E_NOINTERFACE);
  EXPECT_EQ(Find<HRESULT(WINAPI*)()>(library, "DllCanUnloadNow")(), S_FALSE);
}

std::size_t UsedMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
}

// Loads the library, makes an object, uses it, releases all.
bool LoadUseAndRelease() {
  const ComApartment apartment;
  const HMODULE library = LoadLibraryW(Library().c_str());
  const auto find = Find<GetClassObject>(library, "DllGetClassObject");
  bool isDone = false;
  com::ComReference<IClassFactory> factory;
  com::ComReference<IDispatch> object;
  if (find != nullptr && find(com::IdOf(com::kClassId), IID_IClassFactory, factory.ReceiveVoid()) == S_OK &&
      factory->CreateInstance(nullptr, IID_IDispatch, object.ReceiveVoid()) == S_OK) {
    const AutomationObject page(std::move(object));
    isDone = page.Start() && TextOf(page.Call(L"HelloWorld").result.get()) == L"Hello World!";
  }
  factory = {};
  return isDone && FreeLibrary(library) != FALSE;
}

TEST(Activation, AThousandTimesLoadUseAndReleaseCostNoMemory) {
  for (int i = 0; i < 100; ++i) ASSERT_TRUE(LoadUseAndRelease()) << i;
  const std::size_t before = UsedMemory();
  for (int i = 100; i < 1000; ++i) ASSERT_TRUE(LoadUseAndRelease()) << i;
  EXPECT_LT(UsedMemory(), before + (std::size_t{1} << 20));
}

}  // namespace
}  // namespace oxaqrycln::testing
