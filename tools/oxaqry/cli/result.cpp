#include "tools/oxaqry/cli/result.h"

#include <ostream>

#include "tools/oxaqry/cli/table.h"

namespace oxaqrycln::oxaqry {
int PrintResult(const Output& output, const Json& document, std::string_view text) {
  if (output.json) {
    output.out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  } else {
    output.out << text << (text.empty() || text.ends_with('\n') ? "" : "\n");
  }
  return 0;
}

void Warn(const Output& output, const std::string& text) {
  if (output.json) {
    output.err << Json{{"warning", text}}.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  } else {
    output.err << "oxaqry: warning: " << text << '\n';
  }
}

std::vector<std::string> Cells(const std::vector<std::string>& texts) {
  std::vector<std::string> cells;
  for (const std::string& text : texts) cells.push_back(Printable(text));
  return cells;
}

}  // namespace oxaqrycln::oxaqry
