// The command "fetch": content of a document through the blob directory.
#include <array>
#include <optional>
#include <regex>

#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/documents/document_access.h"
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

int Fetch(const Settings& settings, const FetchRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  const auto ask = [&](ArchiveQuery& archive, Variant* name, Variant* length) {
    if (request.segment) {
      return archive->TELOGetSegmentData(key.channel, key.archive, key.document, key.version, *request.segment, name,
                                         length, archive.status());
    }
    if (request.printField) {
      return archive->TELOGetSegmentPrintfile(key.channel, key.archive, key.document, key.version,
                                              FieldFromUtf8(*request.printField), name, length, archive.status());
    }
    if (!request.pages.empty()) {
      return archive->TELOGetSegmentMultiTIF(key.channel, key.archive, key.document, key.version,
                                             FieldFromUtf8(request.pages), name, length, archive.status());
    }
    return archive->TELOGetSegmentFirstBLOB(key.channel, key.archive, key.document, key.version,
                                            FieldFromUtf8(request.extension), name, length, archive.status());
  };
  FetchFile(settings, request.target, output, ask, [&] {
    return FetchResult{{{"name", ToText(request.document)}}, "Fetched "};
  });
  return 0;
}

// Page numbers start at 1 and have at most six digits; the component refuses a list of more than a million pages.
std::string CheckPages(const std::string& pages) {
  static const std::regex list("[1-9][0-9]{0,5}(-[1-9][0-9]{0,5})?(;[1-9][0-9]{0,5}(-[1-9][0-9]{0,5})?)*");
  return std::regex_match(pages, list) ? "" : "\"" + pages + "\" is not a list of pages like \"1;4-6\"";
}

}  // namespace

void AddFetch(CommandParser& parser) {
  const auto [fetch, request] = parser.AddQuery(
      parser.app(), "fetch", "fetch content of a document through the blob directory",
      "Examples:\n  oxaqry fetch Mail/Inbox/1262 --first csv --blob-local /srv/blobs --hosts localhost,2001\n"
      "  oxaqry fetch Mail/Fax/1120 --pages '1;4-6' -o fax.tif --blob-local /srv/blobs --hosts localhost,2001",
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
