// The commands "live" and "direct".
#include <ostream>
#include <vector>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/servers/server_commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

std::vector<std::string> SplitAt(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  for (std::size_t from = 0;;) {
    const std::size_t end = text.find(separator, from);
    parts.emplace_back(text.substr(from, end - from));
    if (end == std::string_view::npos) return parts;
    from = end + separator.size();
  }
}

}  // namespace

int Live(const Settings& settings, const Output& output) {
  const auto query = settings.Connect();
  const Answer answer = CheckLive(*query);
  if (answer.isError) Fail(answer.text);
  if (output.json) {
    output.out << Json{{"answer", ToUtf8(answer.text)}}.dump(2) << "\n";
  } else {
    output.out << Printable(answer.text) << '\n';
  }
  return 0;
}

int Direct(const Settings& settings, const std::string& text, const Output& output) {
  const auto query = settings.Connect();
  const Answer answer = AskDirect(*query, TextFromUtf8(text));
  if (answer.isError) Fail(answer.text);
  const std::vector<std::string> lines = SplitAt(answer.text, "\r\n");
  Json list = Json::array();
  for (const std::string& line : lines) {
    if (output.json) {
      list.push_back(ToUtf8(line));
    } else {
      output.out << Printable(line) << '\n';
    }
  }
  if (output.json) output.out << Json{{"lines", std::move(list)}}.dump(2) << "\n";
  return 0;
}

}  // namespace oxaqrycln::oxaqry
