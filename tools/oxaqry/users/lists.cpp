#include "tools/oxaqry/users/lists.h"

#include "tools/oxaqry/cli/settings.h"
#include "values/code_page.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {

std::vector<std::string> ListEntries(std::string_view list) {
  std::vector<std::string> entries;
  if (list.size() < 2) return entries;
  const std::string divider{list.back(), ',', list.front()};
  const std::string_view inner = list.substr(1, list.size() - 2);
  for (std::size_t from = 0;;) {
    const std::size_t end = inner.find(divider, from);
    entries.emplace_back(inner.substr(from, end - from));
    if (end == std::string_view::npos) return entries;
    from = end + divider.size();
  }
}

std::vector<std::vector<std::string>> ListLines(std::string_view lines, std::size_t fieldCount) {
  std::vector<std::vector<std::string>> records;
  while (!lines.empty()) {
    const std::size_t end = lines.find("\r\n");
    records.push_back(ListEntries(lines.substr(0, end)));
    if (records.back().size() != fieldCount) {
      throw CommandError(
          "a text in the web user database holds \"^,^\" or a line end, which divide the lists of pages");
    }
    lines.remove_prefix(end == std::string_view::npos ? lines.size() : end + 2);
  }
  return records;
}

Json JsonId(const std::string& id) {
  try {
    const std::int32_t number = Variant(id).ToLong();
    if (std::to_string(number) == id) return number;
  } catch (const RuntimeError&) {  // a text
  }
  return ToUtf8(id);
}

}  // namespace oxaqrycln::oxaqry
