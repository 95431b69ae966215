// The command "print-hits": a hit list as a PDF file, which the query server makes.
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/documents/search_arguments.h"
#include "tools/oxaqry/transfers/fetched_file.h"

namespace oxaqrycln::oxaqry {
namespace {

struct PrintRequest {
  client::SearchOptions search;
  std::string title;  // "" for the query
  FetchTarget target;
};

int PrintHits(const Settings& settings, const PrintRequest& request, const Output& output) {
  const std::string& title = request.title.empty() ? request.search.query : request.title;
  const auto ask = [&](client::Archive& archive) { return archive.PrintHits(request.search, title); };
  return FetchFile(settings, request.target, output, ask, "Printed the hits to ", {{"title", title}});
}

}  // namespace

void AddPrintHits(CommandParser& parser) {
  const auto [print, request] = parser.AddQuery(
      parser.app(), "print-hits", "run a query and have its hit list printed to a PDF file",
      "Example:\n  oxaqry print-hits invoice -o invoices.pdf --title 'All invoices' --blob-local /srv/blobs \\\n"
      "    --hosts localhost,2001",
      PrintHits);
  AddSearchArguments(*print, request->search);
  print->add_option("--title", request->title, "the title of each page (default: the query)")->type_name("T");
  AddFetchTarget(*print, request->target);
}

}  // namespace oxaqrycln::oxaqry
