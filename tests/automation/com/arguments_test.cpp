// Arguments as the engines of several languages pass them: typed references, names, values of every type.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "tests/automation/com/automation_object.h"

namespace oxaqrycln::testing {
namespace {

class Arguments : public ::testing::Test {
 protected:
  // What the method makes of a value: its text.
  Outcome Echo(VARIANT value) const {
    Outcome base64 = page.Call(L"EncodeBase64", {value});
    if (base64.status != S_OK) return base64;
    return page.Call(L"DecodeBase64", {base64.result.Release()});
  }
  // Of a document whose length is 1009 and whose title is a text.
  HRESULT DocumentInfo(VARIANT length, VARIANT title) const {
    return page
        .Call(L"TELOGetDocumentInfo",
              {Text(L"a"), Text(L"b"), Text(L"1"), Text(L"2"), length, LeftOut(), LeftOut(), title})
        .status;
  }

  const ComApartment apartment;
  const AutomationObject page;
};

template <typename Type>
VARIANT Value(VARTYPE type, Type data) {
  VARIANT value{};
  value.vt = type;
  std::memcpy(&value.llVal, &data, sizeof data);
  return value;
}

VARIANT Decimal(const wchar_t* text) {
  VARIANT value{};
  VarDecFromStr(const_cast<wchar_t*>(text), MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), 0), 0,
                &value.decVal);
  value.vt = VT_DECIMAL;
  return value;
}

TEST_F(Arguments, OfEveryTypeAreReadByValueAndByReference) {
  struct Case {
    const char* name;
    VARIANT value;
    const wchar_t* text;
  };
  for (Case each : {
           Case{"byte", Value<BYTE>(VT_UI1, 200), L"200"},
           Case{"signed byte", Value<signed char>(VT_I1, -5), L"-5"},
           Case{"Integer", Value<short>(VT_I2, -300), L"-300"},
           Case{"unsigned 16 bits", Value<USHORT>(VT_UI2, 65535), L"65535"},
           Case{"Long", Value<LONG>(VT_I4, -70000), L"-70000"},
           Case{"machine integer", Value<INT>(VT_INT, 70000), L"70000"},
           Case{"unsigned 32 bits", Value<ULONG>(VT_UI4, 4294967295U), L"4294967295"},
           Case{"unsigned machine integer", Value<UINT>(VT_UINT, 7), L"7"},
           Case{"64 bits", Value<LONGLONG>(VT_I8, -8), L"-8"},
           Case{"unsigned 64 bits", Value<ULONGLONG>(VT_UI8, 5000000000U), L"5000000000"},
           Case{"Single", Value<float>(VT_R4, 0.1F), L"0.1"},
           Case{"Double", Value<double>(VT_R8, 0.25), L"0.25"},
           Case{"Currency", Value<LONGLONG>(VT_CY, 15000), L"1.5"},
           Case{"Decimal", Decimal(L"2.5"), L"2.5"},
           Case{"Boolean", Boolean(true), L"True"},
           Case{"Date", Value<double>(VT_DATE, 2.0), L"01.01.1900"},
           Case{"String", Text(std::wstring_view(L"a\0b", 3)), L"a"},
           Case{"no String", Value<BSTR>(VT_BSTR, nullptr), L""},
       }) {
    SCOPED_TRACE(each.name);
    std::wstring expected = each.text;
    if (each.value.vt == VT_BSTR && each.value.bstrVal != nullptr) expected = std::wstring(L"a\0b", 3);
    void* const data = each.value.vt == VT_DECIMAL ? static_cast<void*>(&each.value.decVal) : &each.value.llVal;
    VARIANT typed = Reference(each.value.vt, data);
    for (const VARIANT& given : {Reference(each.value), typed, Reference(typed), each.value}) {
      const Outcome outcome = Echo(given);
      EXPECT_EQ(outcome.status, S_OK) << given.vt;
      EXPECT_EQ(TextOf(outcome.result.get()), expected) << given.vt;
    }
  }
}

TEST_F(Arguments, ThatAutomationCannotConvertAreRefusedWithTheirPosition) {
  VARIANT array{};
  array.vt = VT_ARRAY | VT_I4;
  array.parray = SafeArrayCreateVector(VT_I4, 0, 1);
  for (const VARIANT& value : {array, Text(L"a\u3042"), Text(L"\xD83D\xDE00"), Value<LONG>(VT_ERROR, 5),
                               Value<void*>(VT_BYREF | VT_VARIANT, nullptr), Value<void*>(VT_BYREF | VT_BSTR, nullptr),
                               Value<double>(VT_RECORD, 0)}) {
    const Outcome outcome = page.Call(L"TELOGetQueryFormatListInit", {Text(L"a"), value});
    EXPECT_EQ(outcome.status, DISP_E_TYPEMISMATCH) << value.vt;
    EXPECT_EQ(outcome.wrongArgument, 0u) << value.vt;  // counted from the last argument
  }
  EXPECT_EQ(Echo(Value<double>(VT_DATE, 1e9)).status, DISP_E_OVERFLOW);
}

TEST_F(Arguments, ReceiveOutputsInTheTypeOfTheirVariable) {
  ASSERT_TRUE(page.Start());
  struct Case {
    VARTYPE type;
    HRESULT status;
    double number;  // that the variable holds afterwards; 7 is the start
  };
  for (const Case& each :
       {Case{VT_I2, S_OK, 1009}, Case{VT_I4, S_OK, 1009}, Case{VT_INT, S_OK, 1009}, Case{VT_UI2, S_OK, 1009},
        Case{VT_UI4, S_OK, 1009}, Case{VT_UINT, S_OK, 1009}, Case{VT_I8, S_OK, 1009}, Case{VT_UI8, S_OK, 1009},
        Case{VT_R4, S_OK, 1009}, Case{VT_R8, S_OK, 1009}, Case{VT_DATE, S_OK, 1009}, Case{VT_CY, S_OK, 1009},
        Case{VT_BOOL, S_OK, -1}, Case{VT_UI1, DISP_E_OVERFLOW, 7}, Case{VT_I1, DISP_E_OVERFLOW, 7},
        Case{VT_DISPATCH, DISP_E_TYPEMISMATCH, 0}}) {
    VARIANT variable = Number(7);
    VariantChangeType(&variable, &variable, 0, each.type == VT_DISPATCH ? VARTYPE{VT_I8} : each.type);
    VARIANT title = Text(L"kept");
    EXPECT_EQ(DocumentInfo(Reference(each.type, &variable.llVal), Reference(VT_BSTR, &title.bstrVal)), each.status)
        << each.type;
    // Where one output cannot be converted, none is written.
    EXPECT_EQ(TextOf(title), each.status == S_OK ? L"Invoice for a harbour crane" : L"kept") << each.type;
    VariantClear(&title);
    if (each.type == VT_DISPATCH) continue;
    VARIANT number{};
    EXPECT_EQ(VariantChangeType(&number, &variable, 0, VT_R8), S_OK) << each.type;
    EXPECT_EQ(number.dblVal, each.number) << each.type;
  }
  VARIANT decimal = Decimal(L"7");
  EXPECT_EQ(DocumentInfo(Reference(VT_DECIMAL, &decimal.decVal), LeftOut()), S_OK);
  EXPECT_EQ(VarDecCmpR8(&decimal.decVal, 1009), static_cast<HRESULT>(VARCMP_EQ));
  EXPECT_EQ(decimal.vt, VT_DECIMAL);
  VARIANT text = Text(L"x");
  EXPECT_EQ(DocumentInfo(Reference(VT_BSTR, &text.bstrVal), LeftOut()), S_OK);
  EXPECT_EQ(TextOf(text), L"1009");
  LONG number = 7;
  EXPECT_EQ(DocumentInfo(LeftOut(), Reference(VT_I4, &number)), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(number, 7);
}

TEST_F(Arguments, AVariableWithAReferenceReceivesTheOutputThere) {
  ASSERT_TRUE(page.Start());
  LONG length = 7;
  VARIANT variable = Reference(VT_I4, &length);
  EXPECT_EQ(DocumentInfo(Reference(variable), LeftOut()), S_OK);
  EXPECT_EQ(length, 1009);
  EXPECT_EQ(variable.vt, VT_BYREF | VT_I4);
}

TEST_F(Arguments, AnOutputIsNotRead) {
  ASSERT_TRUE(page.Start());
  VARIANT title = Text(L"\u3042");
  EXPECT_EQ(DocumentInfo(LeftOut(), Reference(title)), S_OK);
  EXPECT_EQ(TextOf(title), L"Invoice for a harbour crane");
}

TEST_F(Arguments, AnOutputThatTheMethodLeavesAloneKeepsItsType) {
  BSTR text = SysAllocString(L"kept");
  VARIANT currency = Value<LONGLONG>(VT_CY, 15000);
  EXPECT_EQ(page.Call(L"GetUserTELOUser", {Number(1), Reference(VT_BSTR, &text), Reference(currency)}).status, S_OK);
  EXPECT_STREQ(text, L"kept");
  EXPECT_EQ(currency.vt, VT_CY);
  EXPECT_EQ(page.Call(L"TELOEditDocument", {Text(L"x"), Reference(currency)}).status, S_OK);
  EXPECT_EQ(currency.vt, VT_CY);
}

TEST_F(Arguments, MayBeNamedInAnyOrder) {
  ASSERT_TRUE(page.Start());
  const wchar_t* names[] = {L"TELOGetDocumentInfo", L"STRVER", L"lngLaenge", L"strChannel", L"strArchive", L"strDocID"};
  DISPID numbers[6] = {};
  ASSERT_EQ(page.get()->GetIDsOfNames(IID_NULL, const_cast<wchar_t**>(names), 6, 0, numbers), S_OK);
  const DISPID method = numbers[0];
  LONG length = 0;
  const auto named = [&](std::vector<VARIANT> arguments, std::vector<DISPID> positions) {
    return page.Invoke(method, DISPATCH_METHOD, std::move(arguments), std::move(positions)).status;
  };
  EXPECT_EQ(
      named({Text(L"2"), Reference(VT_I4, &length), Text(L"a"), Text(L"b"), Text(L"1")}, {numbers + 1, numbers + 6}),
      S_OK);
  EXPECT_EQ(length, 1009);
  length = 0;
  EXPECT_EQ(
      named({Text(L"a"), Text(L"b"), Text(L"1"), Reference(VT_I4, &length), Text(L"2")}, {numbers[2], numbers[1]}),
      S_OK);
  EXPECT_EQ(length, 1009);
  EXPECT_EQ(named({Text(L"a"), Text(L"b"), Text(L"2")}, {numbers[1]}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(named({Text(L"a"), Text(L"b")}, {numbers[3]}), DISP_E_BADPARAMCOUNT) << "given by position, too";
  EXPECT_EQ(named({Text(L"a"), Text(L"b")}, {numbers[1], numbers[1]}), DISP_E_BADPARAMCOUNT) << "given twice";
  EXPECT_EQ(named({Text(L"a")}, {99}), DISP_E_BADPARAMCOUNT) << "no such parameter";
  EXPECT_EQ(named({Text(L"a")}, {-3}), DISP_E_BADPARAMCOUNT) << "no such parameter";
  const wchar_t* unknown[] = {L"Encode", L"strOther"};
  EXPECT_EQ(page.get()->GetIDsOfNames(IID_NULL, const_cast<wchar_t**>(unknown), 2, 0, numbers), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(numbers[1], DISPID_UNKNOWN);
}

TEST_F(Arguments, TheKindOfAccessMustFitTheMember) {
  struct Case {
    const wchar_t* member;
    WORD access;
    std::size_t arguments;
    HRESULT status;
  };
  for (const Case& each : {Case{L"HelloWorld", DISPATCH_METHOD, 0, S_OK},
                           Case{L"HelloWorld", DISPATCH_PROPERTYGET, 0, DISP_E_MEMBERNOTFOUND},
                           Case{L"HelloWorld", DISPATCH_PROPERTYPUT, 1, DISP_E_MEMBERNOTFOUND},
                           Case{L"HelloWorld", DISPATCH_METHOD, 1, DISP_E_BADPARAMCOUNT},
                           Case{L"strUserName", DISPATCH_PROPERTYGET, 0, S_OK},
                           Case{L"strUserName", DISPATCH_METHOD, 0, DISP_E_MEMBERNOTFOUND},
                           Case{L"strUserName", DISPATCH_PROPERTYGET, 1, DISP_E_BADPARAMCOUNT},
                           Case{L"strUserName", DISPATCH_PROPERTYPUT, 0, DISP_E_BADPARAMCOUNT},
                           Case{L"strUserName", DISPATCH_PROPERTYPUTREF, 1, DISP_E_MEMBERNOTFOUND},
                           Case{L"RemoteHosts", DISPATCH_PROPERTYGET, 0, DISP_E_MEMBERNOTFOUND},
                           Case{L"RemoteHosts", DISPATCH_METHOD, 1, DISP_E_MEMBERNOTFOUND},
                           Case{L"RemoteHosts", DISPATCH_PROPERTYPUT, 2, DISP_E_BADPARAMCOUNT}}) {
    std::vector<VARIANT> arguments;
    for (std::size_t i = 0; i < each.arguments; ++i) arguments.push_back(Text(L"1"));
    EXPECT_EQ(page.Invoke(page.NumberOf(each.member), each.access, std::move(arguments)).status, each.status)
        << std::string(each.member, each.member + std::wcslen(each.member)) << ' ' << each.access;
  }
  for (const DISPID number :
       {DISPID{-1}, DISPID{0}, DISPID{101}, std::numeric_limits<DISPID>::max(), std::numeric_limits<DISPID>::min()}) {
    EXPECT_EQ(page.Invoke(number, DISPATCH_METHOD, {}).status, DISP_E_MEMBERNOTFOUND) << number;
  }
}

TEST_F(Arguments, NoResultIsReturnedWhereNoneIsWanted) {
  DISPPARAMS none{};
  EXPECT_EQ(
      page.get()->Invoke(page.NumberOf(L"HelloWorld"), IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
      S_OK);
}

}  // namespace
}  // namespace oxaqrycln::testing
