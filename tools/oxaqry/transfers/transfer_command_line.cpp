#include "tools/oxaqry/transfers/transfer_command_line.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "support/text_helpers.h"
#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/transfers/transfer_commands.h"
#include "values/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

std::string CheckPages(const std::string& pages) {
  try {
    const bool isList = pages.find_first_not_of("0123456789;-") == std::string::npos && !GetPages(pages).empty();
    return isList ? "" : "\"" + pages + "\" is no list of pages like \"1;4-6\"";
  } catch (const RuntimeError&) {
    return "\"" + pages + "\" names too many pages";
  }
}

// Not 0x10, and not 010, which is no ten.
std::string CheckDecimal(const std::string& text) {
  const bool isDecimal =
      text.find_first_not_of("0123456789") == std::string::npos && (text.size() == 1 || text[0] != '0');
  return isDecimal ? "" : "\"" + text + "\" is no whole number from 0 on";
}

template <typename Number>
CLI::Validator FromZero() {
  return CLI::Validator(CLI::Range(Number{0}, std::numeric_limits<Number>::max())).description("");
}

void AddFetch(CommandParser& parser) {
  const auto request = std::make_shared<FetchRequest>();
  CLI::App* const fetch = parser.AddQuery(
      "fetch", "fetch content of a document by way of the blob directory",
      "Examples:\n  oxaqry fetch Mail/Inbox/1262 --first csv --blob-local /srv/blobs --hosts localhost,2001\n"
      "  oxaqry fetch Mail/Fax/1120 --pages '1;4-6' -o fax.tif --blob-local /srv/blobs --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Fetch(settings, *request, output); });
  AddDocumentArgument(*fetch, request->document);
  const std::array contents{
      fetch->add_option("--segment", request->segment, "the content of the segment of this index, as \"show\" tells it")
          ->check(FromZero<std::int16_t>())
          ->type_name("N"),
      fetch->add_option("--first", request->extension, "the first stored file, of an extension (the default)")
          ->expected(0, 1)
          ->type_name("[EXT]"),
      fetch->add_option("--print", request->printField, "a file to print of the field of this id")->type_name("FIELD"),
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

void AddTransfer(CommandParser& parser) {
  const auto request = std::make_shared<TransferRequest>();
  CLI::App* const transfer = parser.AddQuery(
      "transfer", "receive a file of the remote blob directory over the connection",
      "Examples:\n  oxaqry transfer scan.tif --size 48213 --blob-local /srv/blobs --hosts localhost,2001\n"
      "  oxaqry transfer scan.tif --size 48213 -o scan.tif --blob-remote 'D:\\blobs' --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Transfer(settings, *request, output); });
  transfer->add_option("NAME", request->name, "the file's name")->required()->type_name("");
  transfer->add_option("--size", request->size, "the file's length in bytes")
      ->required()
      ->check(CLI::Validator(CheckDecimal, ""))
      ->check(FromZero<std::int32_t>())
      ->type_name("N");
  AddOutput(*transfer, request->output, request->force,
            "file or directory to put it (default: NAME in the local blob directory)");
}

void AddUpload(CommandParser& parser) {
  const auto request = std::make_shared<UploadRequest>();
  CLI::App* const upload = parser.AddQuery(
      "upload", "send files to the query server's blob directory",
      "Example:\n  oxaqry upload scan.tif letter.pdf --blob-local /srv/blobs --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Upload(settings, *request, output); });
  upload->add_option("FILE", request->files, "the files; those not in the local blob directory are put there")
      ->required()
      ->type_name("");
  upload->add_flag("--force", request->force, "overwrite files of these names in the local blob directory");
}

}  // namespace

void AddTransferCommands(CommandParser& parser) {
  AddFetch(parser);
  AddTransfer(parser);
  AddUpload(parser);
}

}  // namespace oxaqrycln::oxaqry
