// The command "fetch": content of a document through the blob directory.
#include <array>
#include <optional>
#include <string_view>

#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/transfers/fetched_file.h"

namespace oxaqrycln::oxaqry {
namespace {

// Which content of a document: at most one of the four, otherwise its first stored file.
struct FetchRequest {
  DocumentName document;
  std::optional<std::int16_t> segment;  // its index
  std::string extension;                // of the first stored file; "" for any
  std::optional<std::string> printField;
  std::string pages;
  FetchTarget target;
};

client::Content ContentOf(const FetchRequest& request) {
  if (request.segment) return client::Content::OfSegment(*request.segment);
  if (request.printField) return client::Content::Printable(*request.printField);
  if (!request.pages.empty()) return client::Content::Pages(request.pages);
  return client::Content::FirstFile(request.extension);
}

int Fetch(const Settings& settings, const FetchRequest& request, const Output& output) {
  const auto ask = [&](client::Archive& archive) { return archive.Fetch(request.document, ContentOf(request)); };
  return FetchFile(settings, request.target, output, ask, "Fetched ", {{"name", ToText(request.document)}});
}

// A page number starts at 1 and has at most six digits; the component refuses a list of more than a million pages.
bool IsPage(std::string_view text) {
  return !text.empty() && text.size() <= 6 && text.front() != '0' && ParseNumber(text).has_value();
}

std::string CheckPages(const std::string& pages) {
  bool isList = true;
  for (const std::string& range : SplitText(pages, ";")) {
    const std::vector<std::string> ends = SplitText(range, "-");
    isList = isList && ends.size() <= 2 && IsPage(ends.front()) && IsPage(ends.back());
  }
  return isList ? "" : "\"" + pages + "\" is not a list of pages like \"1;4-6\"";
}

}  // namespace

void AddFetch(CommandParser& parser) {
  const auto [fetch, request] = parser.AddQuery(
      parser.app(), "fetch", "fetch content of a document through the blob directory",
      "Examples:\n  oxaqry fetch Mail/Inbox/1262 --first csv --blob-local /srv/blobs --hosts localhost,2001\n"
      "  oxaqry fetch Mail/Fax/1120 --pages '1;4-6' -o fax.tif --blob-local /srv/blobs --hosts localhost,2001\n"
      "  oxaqry fetch Mail/Inbox/1262 --first csv -o - --blob-local /srv/blobs --hosts localhost,2001 | head",
      Fetch);
  AddDocumentArgument(*fetch, request->document);
  const std::array contents{
      fetch
          ->add_option("--segment", request->segment, "the content of the segment of this index, as \"show\" prints it")
          ->check(FromZero<std::int16_t>())
          ->type_name("N"),
      fetch->add_option("--first", request->extension, "the first stored file, of an extension (the default)")
          ->expected(0, 1)
          ->type_name("[EXT]"),
      fetch
          ->add_option("--print", request->printField,
                       "a file to print of the field of this id, from a query server with the print flag")
          ->type_name("FIELD"),
      fetch->add_option("--pages", request->pages, "an image file of these pages, \"1;4-6\"")
          ->check(CheckPages, "")
          ->type_name("PAGES"),
  };
  for (CLI::Option* const one : contents) {
    for (CLI::Option* const other : contents) {
      if (one < other) one->excludes(other);
    }
  }
  AddFetchTarget(*fetch, request->target);
}

}  // namespace oxaqrycln::oxaqry
