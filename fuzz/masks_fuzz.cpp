// The walk through masks and their fields. Input: the lines of the answer.
#include "fuzz/answering_page.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

void CheckFields(clsQuery& query, std::int32_t count) {
  for (std::int32_t left = count; left > 0; --left) {
    Variant list;
    const Variant result =
        query.TELOGetMasksNextField(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &list);
    if (result.type() == Variant::Type::Integer) {
      Require(list.IsEmpty(), "without a field the last output is unchanged");
      return;
    }
    Require(result.ToLong() == left - 1, "a field returns how many follow");
  }
  Require(IsSame(query.TELOGetMasksNextField(), Variant::Integer(-1)), "no field follows the last one");
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view text) {
  static AnsweringPage page;
  clsQuery& query = page.query;
  page.SetAnswer("Status: OK\r\n" + std::string(text));
  auto masks = Parts(text, "\r\n");
  std::erase_if(masks, [](std::string_view line) { return !line.starts_with('@'); });

  Variant status;
  const Variant count = page.Ask([&] { return query.TELOGetMasksInit("Mail", "Inbox", &status); });
  Require(IsSame(count, Variant(masks.size())), "every mask is counted");
  Require(status == Variant(""), "a success has an empty status");
  for (int walk = 0; walk < 2; ++walk) {
    for (const std::string_view mask : masks) {
      Variant name;
      const Variant fields = query.TELOGetMasksNext(&name);
      Require(fields.type() == Variant::Type::Long && name == Variant(mask.substr(1)), "the walk reaches every mask");
      CheckFields(query, fields.ToLong());
    }
    Variant name("x");
    Require(IsSame(query.TELOGetMasksNext(&name), Variant::Integer(-1)) && name == Variant(""), "the walk ends");
    query.TELOGetMasksFirst();
  }
}
