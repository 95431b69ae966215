// A page that posts a file, and objects in place of texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "tests/automation/com/automation_object.h"

namespace oxaqrycln::testing {
namespace {

// An object of a host: answers every name with a value, and "BinaryRead" with the next bytes of a body.
class HostObject : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    const bool isKnown = id == IID_IUnknown || id == IID_IDispatch;
    *object = isKnown ? this : nullptr;
    if (isKnown) AddRef();
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) override {
    numbers[0] = std::wcscmp(names[0], L"Request") == 0      ? kRequest
                 : std::wcscmp(names[0], L"TotalBytes") == 0 ? kTotalBytes
                 : std::wcscmp(names[0], L"BinaryRead") == 0 ? kBinaryRead
                                                             : DISPID_UNKNOWN;
    return numbers[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD access, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* details, UINT*) override {
    if (page != nullptr) statusInside = page->Call(L"HelloWorld").status;
    if (number == kBinaryRead && access == DISPATCH_METHOD) {
      if (isBroken) {
        details->bstrDescription = SysAllocString(L"gone");
        return DISP_E_EXCEPTION;
      }
      return Read(static_cast<std::size_t>(parameters->rgvarg[0].lVal), *result);
    }
    const auto found = values.find(number);
    if (access != DISPATCH_PROPERTYGET || found == values.end()) return DISP_E_MEMBERNOTFOUND;
    return VariantCopy(result, &found->second);
  }

  static constexpr DISPID kRequest = 1;
  static constexpr DISPID kTotalBytes = 2;
  static constexpr DISPID kBinaryRead = 3;
  ULONG references = 1;
  std::map<DISPID, VARIANT> values;
  std::string body;
  std::size_t place = 0;
  bool isBroken = false;
  VARTYPE elements = VT_UI1;
  const AutomationObject* page = nullptr;  // is called inside every call
  HRESULT statusInside = S_OK;

 private:
  HRESULT Read(std::size_t count, VARIANT& result) {
    count = std::min(count, body.size() - place);
    result.vt = static_cast<VARTYPE>(VT_ARRAY | elements);
    result.parray = SafeArrayCreateVector(elements, 0, static_cast<ULONG>(count));
    for (std::size_t i = 0; i < count; ++i) {
      const auto byte = static_cast<BYTE>(body[place + i]);
      if (elements == VT_UI1) {
        static_cast<BYTE*>(result.parray->pvData)[i] = byte;
      } else {
        static_cast<VARIANT*>(result.parray->pvData)[i] = Number(byte);
      }
    }
    place += count;
    return S_OK;
  }
};

VARIANT ObjectValue(IDispatch& object) {
  VARIANT value{};
  value.vt = VT_DISPATCH;
  value.pdispVal = &object;
  object.AddRef();
  return value;
}

// A page whose visitor posts a form with a file.
class PostedForm : public ::testing::Test {
 protected:
  PostedForm() {
    for (int i = 0; i < 100000; ++i) content_ += static_cast<char>(i * 7);
    request_.body =
        "--line\r\nContent-Disposition: form-data; name=\"file\"; filename=\"C:\\own\\letter.txt\"\r\n\r\n" + content_ +
        "\r\n--line--\r\n";
    request_.values[HostObject::kTotalBytes] = Number(static_cast<LONG>(request_.body.size()));
    VARIANT& object = context_.values[HostObject::kRequest];
    object.vt = VT_DISPATCH;
    object.pdispVal = &request_;
  }

  // The result of UploadFile, Empty when a call failed.
  VARIANT Upload() {
    const HRESULT started = page_.Call(L"OnStartPage", {ObjectValue(context_)}).status;
    Outcome stored = page_.Call(L"UploadFile", {Text(L"host"), Reference(name_), Reference(VT_I4, &size_)});
    const HRESULT ended = page_.Call(L"OnEndPage").status;
    return started == S_OK && ended == S_OK ? stored.result.Release() : VARIANT{};
  }

  const ComApartment apartment_;
  const AutomationObject page_;
  HostObject context_;
  HostObject request_;
  std::string content_;
  VARIANT name_{};
  LONG size_ = 0;
};

TEST_F(PostedForm, IsStoredByteByByte) {
  ASSERT_TRUE(page_.Start());
  for (const VARTYPE elements : {VT_UI1, VT_VARIANT}) {
    request_.elements = elements;
    request_.place = 0;
    const VARIANT stored = Upload();
    EXPECT_EQ(stored.vt, VT_I4) << elements;
    EXPECT_EQ(stored.lVal, 1) << elements;
    EXPECT_EQ(TextOf(name_), L"host_letter.txt");
    EXPECT_EQ(size_, 100000);
    std::ifstream file(std::filesystem::path(Setting(L"OXAQRYCLN_TEST_FOLDER")) / L"host_letter.txt", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), content_) << elements;
    VariantClear(&name_);
  }
  EXPECT_EQ(context_.references, 1u);
  EXPECT_EQ(request_.references, 1u);
}

TEST_F(PostedForm, ARequestThatFailsIsAFailureOfTheMethod) {
  ASSERT_TRUE(page_.Start());
  request_.isBroken = true;
  const VARIANT stored = Upload();
  EXPECT_EQ(stored.vt, VT_I2);
  EXPECT_EQ(stored.iVal, -1);
  EXPECT_EQ(name_.vt, VT_EMPTY);
}

TEST_F(PostedForm, AScriptThatIsAskedForThePageCannotCallTheInstance) {
  ASSERT_TRUE(page_.Start());
  request_.page = &page_;
  Upload();
  EXPECT_EQ(request_.statusInside, RPC_E_CALL_REJECTED);
  EXPECT_EQ(page_.Call(L"HelloWorld").status, S_OK);
}

TEST(ObjectArgument, StandsForItsDefaultValue) {
  const ComApartment apartment;
  const AutomationObject page;
  HostObject object;
  object.values[DISPID_VALUE] = Text(L"secret");
  EXPECT_EQ(TextOf(page.Call(L"Encode", {ObjectValue(object)}).result.get()), L"AC98A69293A4");
  EXPECT_EQ(page.Set(L"strUserName", ObjectValue(object)), S_OK);
  EXPECT_EQ(TextOf(page.Call(L"strUserName").result.get()), L"secret");
  VariantClear(&object.values[DISPID_VALUE]);
  object.values.clear();
  const Outcome failed = page.Call(L"Encode", {ObjectValue(object)});
  EXPECT_EQ(failed.status, S_OK);
  EXPECT_EQ(TextOf(failed.result.get()), L"");
  EXPECT_EQ(object.references, 1u);
}

}  // namespace
}  // namespace oxaqrycln::testing
