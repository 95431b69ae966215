#include "tools/oxaqry/users/lists.h"

#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/users/commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

std::vector<std::string> Entries(std::string_view list) {
  if (list.size() < 2) return {};
  const std::string divider{list.back(), ',', list.front()};
  return SplitText(list.substr(1, list.size() - 2), divider);
}

}  // namespace

Json JsonId(const std::string& id) {
  const auto number = ParseInteger(id);
  return number && std::to_string(*number) == id ? Json(*number) : Json(ToUtf8(id));
}

Json TextEntries(std::string_view list) {
  Json entries = Json::array();
  for (const std::string& each : Entries(list)) entries.push_back(ToUtf8(each));
  return entries;
}

Json IdEntries(std::string_view list) {
  Json entries = Json::array();
  for (const std::string& each : Entries(list)) entries.push_back(JsonId(each));
  return entries;
}

Json LineObjects(std::string_view lines, std::size_t idCount, const std::vector<const char*>& members) {
  Json objects = Json::array();
  if (lines.ends_with("\r\n")) lines.remove_suffix(2);
  if (lines.empty()) return objects;
  for (const std::string& line : SplitText(lines, "\r\n")) {
    const std::vector<std::string> fields = Entries(line);
    if (fields.size() != members.size()) {
      throw CommandError(
          "a text in the web user database contains \"^,^\" or a line end, which separate entries of lists");
    }
    Json object;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      object[members[i]] = i < idCount ? JsonId(fields[i]) : Json(ToUtf8(fields[i]));
    }
    objects.push_back(std::move(object));
  }
  return objects;
}

}  // namespace oxaqrycln::oxaqry
