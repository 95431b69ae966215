#include "tools/devserver/commands/handlers.h"

#include "tools/devserver/content/pdf_table.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/text_parts.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::size_t kMostRows = 10000;
constexpr std::size_t kMostColumns = 40;
constexpr std::size_t kMostCells = 100000;  // these limits bound the time that other clients wait
constexpr std::size_t kLongestTitle = 200;

std::vector<std::vector<std::string>> ParseRows(std::string_view text) {
  std::vector<std::vector<std::string>> rows;
  std::size_t cellCount = 0;
  for (bool more = true; more;) {
    const std::size_t end = text.find(kLineEnd);
    more = end != std::string_view::npos;
    RequestFields row = SplitRequest(text.substr(0, end));  // a row has the form of a request
    const std::string number = std::to_string(rows.size() + 1);
    if (!row.ended) throw ServerError("Row " + number + " is not a list of caret-quoted fields");
    if (row.fields.size() > kMostColumns) {
      throw ServerError("Row " + number + " has more than " + std::to_string(kMostColumns) + " columns");
    }
    if (rows.size() > kMostRows) throw ServerError("More than " + std::to_string(kMostRows) + " rows");
    cellCount += row.fields.size();
    if (cellCount > kMostCells) throw ServerError("More than " + std::to_string(kMostCells) + " fields in the rows");
    rows.push_back(std::move(row.fields));
    if (more) text.remove_prefix(end + kLineEnd.size());
  }
  return rows;
}

}  // namespace

Reply PrintHitlistPdf(const Call& call) {
  const std::string& title = call.parameters[0];
  if (title.size() > kLongestTitle) {
    throw ServerError("The title is longer than " + std::to_string(kLongestTitle) + " characters");
  }
  call.blobs.Require(call.parameters[2]);
  return StoreContent(call, "hitlist.pdf", MakePdf({title, ParseRows(call.parameters[1])}));
}

}  // namespace oxaqrycln::devserver
