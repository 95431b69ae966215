// com_bench - what a hit of TELOQueryArchiveNext costs through IDispatch by number, with its four outputs by reference,
// compared with a method that is written by hand and only makes the same five texts. Prints both and their ratio.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "tests/automation/com/automation_object.h"

namespace oxaqrycln::testing {
namespace {

constexpr int kRows = 1000;  // short, so that most rounds are not interrupted
constexpr int kRounds = 1001;

// The least that a server does: replaces four variables by texts and returns a fifth.
class FiveTexts final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (number != 1 || parameters->cArgs != 4) return DISP_E_MEMBERNOTFOUND;
    for (UINT i = 0; i < 4; ++i) {
      VARIANT& variable = *parameters->rgvarg[3 - i].pvarVal;
      VariantClear(&variable);
      variable = Text(texts[i]);
    }
    *result = Text(texts[4]);
    return S_OK;
  }

  std::array<std::wstring, 5> texts;
};

struct Call {
  Call(IDispatch& callee, DISPID member) : object(callee), number(member) {
    for (std::size_t i = 0; i < 4; ++i) arguments[3 - i] = Reference(outputs[i]);
  }
  // False at the end of the list.
  bool Next() {
    DISPPARAMS parameters{arguments.data(), nullptr, 4, 0};
    VARIANT result{};
    object.Invoke(number, IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters, &result, nullptr, nullptr);
    const bool isRow = SysStringLen(result.bstrVal) > 0;
    VariantClear(&result);
    return isRow;
  }

  IDispatch& object;
  const DISPID number;
  std::array<VARIANT, 4> outputs{};
  std::array<VARIANT, 4> arguments{};
};

double NanosecondsOfARow(Call& call) {
  const auto start = std::chrono::steady_clock::now();
  int rows = 0;
  while (rows < kRows && call.Next()) ++rows;
  const std::chrono::duration<double, std::nano> passed = std::chrono::steady_clock::now() - start;
  return rows == kRows ? passed.count() / rows : -1;
}

// The lower quartile, since other programs can only make a round longer.
double Typical(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 4];
}

int Run() {
  const ComApartment apartment;
  const AutomationObject page;
  if (page.get() == nullptr || !page.Start()) return 1;
  FiveTexts five;
  Call plain(five, 1);
  Call hits(*page.get(), page.NumberOf(L"TELOQueryArchiveNext"));
  const std::wstring query = L"rows:" + std::to_wstring(kRows);
  std::vector<double> plainTimes;
  std::vector<double> hitTimes;
  for (int round = 0; round < kRounds; ++round) {
    page.Call(L"TELOQueryArchiveInit", {Text(query), Number(kRows), Number(kRows), Text(L""), Text(L"")});
    hits.Next();  // the titles
    hitTimes.push_back(NanosecondsOfARow(hits));
    // The texts of the last row.
    for (std::size_t i = 0; i < 4; ++i) five.texts[i] = TextOf(hits.outputs[i]);
    five.texts[4] = L"^Offer 7911081^,^Hill 999^,^20.01.2003^";
    plainTimes.push_back(NanosecondsOfARow(plain));
  }
  if (*std::ranges::min_element(hitTimes) <= 0) return 1;
  const double hit = Typical(hitTimes);
  const double least = Typical(plainTimes);
  std::printf("a hit %.0f ns, five texts %.0f ns, ratio %.2f\n", hit, least, hit / least);
  return 0;
}

}  // namespace
}  // namespace oxaqrycln::testing

int main() { return oxaqrycln::testing::Run(); }
