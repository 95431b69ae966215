#include "tools/oxaqry/cli/result.h"

#include <ostream>

#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

void PrintJson(const Output& output, const Json& document) {
  output.out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

void PrintResult(const Output& output, const Json& document, std::string_view text) {
  if (output.json) return PrintJson(output, document);
  output.out << text << '\n';
}

void PrintResult(const Output& output, const Json& document, const Table& table) {
  if (output.json) return PrintJson(output, document);
  table.Print(output.out);
}

Json JsonList(const std::vector<std::string>& texts) {
  Json list = Json::array();
  for (const std::string& text : texts) list.push_back(ToUtf8(text));
  return list;
}

std::vector<std::string> Cells(const std::vector<std::string>& texts) {
  std::vector<std::string> cells;
  for (const std::string& text : texts) cells.push_back(Printable(text));
  return cells;
}

}  // namespace oxaqrycln::oxaqry
