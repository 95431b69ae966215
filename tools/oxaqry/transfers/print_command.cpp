// The command "print-hits": a hit list as a PDF file, which the query server makes.
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/documents/hit_list.h"
#include "tools/oxaqry/transfers/fetched_file.h"

namespace oxaqrycln::oxaqry {
namespace {

struct PrintRequest {
  SearchRequest search;
  std::string title;  // "" for the query
  FetchTarget target;
};

int PrintHits(const Settings& settings, const PrintRequest& request, const Output& output) {
  const std::string title = FieldFromUtf8(request.title.empty() ? request.search.query : request.title);
  std::int32_t hitCount = 0;
  const auto ask = [&](ArchiveQuery& archive, Variant* name, Variant* length) {
    hitCount = RunQuery(archive, request.search).rowCount - 1;  // without the titles
    return archive->FennikPrintHitlistPDF(title, name, length, archive.status());
  };
  FetchFile(settings, request.target, output, ask, [&] {
    return FetchResult{{{"hits", hitCount}},
                       "Printed " + std::to_string(hitCount) + (hitCount == 1 ? " hit to " : " hits to ")};
  });
  return 0;
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
