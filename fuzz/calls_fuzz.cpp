// Calls of a page in any order, with any answer. Input: a letter for each call, a line end, the answer to all of them.
// No error may reach the page.
#include <array>

#include "automation/method_table.h"
#include "fuzz/answering_page.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

constexpr int kMostRequests = 4;  // a request costs more than all other calls
constexpr std::size_t kMostCalls = 64;

struct LetteredMethod {
  char letter;  // a small one for what sends a request
  std::string_view name;
};

constexpr std::array kMethods = {LetteredMethod{'a', "TELOGetAllArchivesExtInit"},
                                 LetteredMethod{'A', "TELOGetAllArchivesExtNext"},
                                 LetteredMethod{'B', "TELOGetAllArchivesExtNextArchive"},
                                 LetteredMethod{'E', "TELOGetAllArchivesExtFirst"},
                                 LetteredMethod{'c', "TELOGetChannelsInit"},
                                 LetteredMethod{'C', "TELOGetChannelsNext"},
                                 LetteredMethod{'d', "TELOGetSegmentDescriptionInit"},
                                 LetteredMethod{'D', "TELOGetSegmentDescriptionNext"},
                                 LetteredMethod{'f', "TELOGetQueryFormatListInit"},
                                 LetteredMethod{'F', "TELOGetQueryFormatListNext"},
                                 LetteredMethod{'H', "TELOSortHitlistInit"},
                                 LetteredMethod{'J', "TELOSortHitlistNext"},
                                 LetteredMethod{'K', "TELODeleteFromHitlist"},
                                 LetteredMethod{'i', "TELOGetDocumentInfo"},
                                 LetteredMethod{'l', "LiveCheck"},
                                 LetteredMethod{'m', "TELOGetMasksInit"},
                                 LetteredMethod{'M', "TELOGetMasksNext"},
                                 LetteredMethod{'L', "TELOGetMasksNextField"},
                                 LetteredMethod{'G', "TELOGetMasksFirst"},
                                 LetteredMethod{'n', "TELOGetNotesInit"},
                                 LetteredMethod{'N', "TELOGetNotesNext"},
                                 LetteredMethod{'o', "OstranaQueryFahrauftraegeInit"},
                                 LetteredMethod{'O', "OstranaQueryFahrauftraegeNext"},
                                 LetteredMethod{'p', "TELOGetArchiveProperties"},
                                 LetteredMethod{'q', "TELOQueryArchiveInit"},
                                 LetteredMethod{'Q', "TELOQueryArchiveNext"},
                                 LetteredMethod{'s', "TELOGetSegmentsInit"},
                                 LetteredMethod{'S', "TELOGetSegmentsNext"},
                                 LetteredMethod{'t', "TELOGetSegmentTextInit"},
                                 LetteredMethod{'T', "TELOGetSegmentTextNext"}};

const MethodEntry* MethodOf(char letter) {
  const auto* const found = std::ranges::find(kMethods, letter, &LetteredMethod::letter);
  if (found == kMethods.end()) return nullptr;
  const MethodEntry* const method = FindMethod(found->name);
  Require(method != nullptr, "every letter has a method");
  return method;
}

// Calls with "1" for every input and a variable for every output.
Variant Call(clsQuery& query, const MethodEntry& method) {
  std::vector<Variant> values(method.parameters.size());
  std::vector<Variant*> arguments;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (method.parameters[i].kind != ParameterKind::OptionalOut) values[i] = "1";
    arguments.push_back(&values[i]);
  }
  return method.call(query, arguments);
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view answer) {
  static AnsweringPage page;
  const std::string_view letters = CutOff(answer, "\n").substr(0, kMostCalls);
  page.SetAnswer(answer);
  int requests = 0;
  for (const char letter : letters) {
    const MethodEntry* const method = MethodOf(letter);
    if (method == nullptr) continue;
    const bool asks = letter >= 'a';
    if (!asks) {
      Call(page.query, *method);
    } else if (requests++ < kMostRequests) {
      const Variant result = page.Ask([&] { return Call(page.query, *method); });
      Require(result.type() == Variant::Type::Long || result.type() == Variant::Type::String ||
                  IsSame(result, Variant::Integer(-1)),
              "a request returns a count, a text or a failure");
    }
  }
}
