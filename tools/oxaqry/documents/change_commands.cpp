// The commands "create", "edit" and "delete".
#include "client/text.h"
#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"

namespace oxaqrycln::oxaqry {
namespace {

// The content of a new document or version.
struct DocumentContents {
  std::string title;
  std::vector<std::string> texts;  // "TYPE:ID=TEXT" each
  std::vector<std::string> files;  // "TYPE:ID=FILE" each
};

struct CreateRequest {
  ArchiveArguments archive;
  DocumentContents contents;
};

struct EditRequest {
  DocumentName document;
  DocumentContents contents;
};

struct DeleteRequest {
  DocumentName document;
  bool yes = false;  // without asking
};

client::FieldContent ParseField(const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::size_t sign = text.find('=');
  if (colon != std::string::npos && sign != std::string::npos && colon < sign) {
    const auto type = ParseNumber(text.substr(0, colon));
    const auto id = ParseNumber(text.substr(colon + 1, sign - colon - 1));
    if (type && id) return {*type, *id, text.substr(sign + 1)};
  }
  throw UsageError("a field is TYPE:ID=CONTENTS with two numbers, not \"" + text + "\"");
}

std::string ReadText(const std::string& path, std::istream& in) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string text = ReadAll(path, in);
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  return text;
}

std::vector<client::FieldContent> FieldsOf(const DocumentContents& contents, std::istream& in) {
  std::vector<client::FieldContent> fields;
  for (const std::string& text : contents.texts) fields.push_back(ParseField(text));
  for (const std::string& text : contents.files) {
    client::FieldContent field = ParseField(text);
    field.text = ReadText(field.text, in);
    fields.push_back(std::move(field));
  }
  return fields;
}

client::Archive OpenForChanges(const Settings& settings, const Output& output) {
  settings.RequireBlobDirectory();
  return OpenArchive(settings, output);
}

int PrintName(const Output& output, const char* what, const DocumentName& name) {
  const Json json{{"name", ToText(name)}, {"document", name.id}, {"version", name.version}};
  return PrintResult(output, json, what + Printable(ToText(name)));
}

int Create(const Settings& settings, const CreateRequest& request, const Output& output) {
  const std::vector<client::FieldContent> fields = FieldsOf(request.contents, output.in);
  const Interruption interruption;
  client::Archive archive = OpenForChanges(settings, output);
  const InterruptedBySignals watch(archive);
  const ArchiveArguments& where = request.archive;
  return PrintName(output, "Created ", archive.Create(where.channel, where.archive, request.contents.title, fields));
}

int Edit(const Settings& settings, const EditRequest& request, const Output& output) {
  const std::vector<client::FieldContent> fields = FieldsOf(request.contents, output.in);
  const Interruption interruption;
  client::Archive archive = OpenForChanges(settings, output);
  const InterruptedBySignals watch(archive);
  std::string title = request.contents.title;
  if (title.empty()) title = archive.Describe(request.document).title;
  return PrintName(output, "New version ", archive.Edit(request.document, title, fields));
}

int Delete(const Settings& settings, const DeleteRequest& request, const Output& output) {
  const std::string name = ToText(request.document);
  Confirm("Delete " + name + (request.document.version.empty() ? " with all its versions?" : "?"), request.yes, output);
  OpenArchive(settings, output).Delete(request.document);
  return PrintResult(output, {{"name", name}, {"deleted", true}}, "Deleted " + name);
}

void AddContents(CLI::App& command, DocumentContents& contents) {
  command
      .add_option("--field", contents.texts,
                  "type, id and text of a field; of an image or file field the name of a file in the blob directory; "
                  "may be repeated")
      ->allow_extra_args(false)
      ->type_name("TYPE:ID=TEXT");
  command
      .add_option("--field-file", contents.files,
                  "the same with the text from a file in UTF-8; \"-\" is standard input")
      ->allow_extra_args(false)
      ->type_name("TYPE:ID=FILE");
}

}  // namespace

void AddChangeCommands(CommandParser& parser) {
  const auto [create, created] = parser.AddQuery(
      parser.app(), "create", "create a document",
      "Examples:\n"
      "  oxaqry create Mail/Inbox --title 'Oak shelves' --field-file 1:7=letter.txt --blob-local /srv/blobs \\\n"
      "    --hosts localhost,2001\n"
      "  oxaqry create Finance/Orders --title Shelves --field 1:16='Ten shelves' --field 3:30=scan.bin \\\n"
      "    --blob-local /srv/blobs --hosts localhost,2001",
      Create);
  AddArchiveArguments(*create, created->archive);
  create->add_option("--title", created->contents.title, "the document's title")->required()->type_name("T");
  AddContents(*create, created->contents);
  const auto [edit, edited] = parser.AddQuery(
      parser.app(), "edit", "make a new version of a document",
      "Example:\n  oxaqry edit Mail/Inbox/1301/1 --field-file 1:7=letter.txt --blob-local /srv/blobs \\\n"
      "    --hosts localhost,2001",
      Edit);
  AddDocumentArgument(*edit, edited->document);
  edit->add_option("--title", edited->contents.title, "the new version's title (default: the present one)")
      ->type_name("T");
  AddContents(*edit, edited->contents);
  const auto [remove, removed] = parser.AddQuery(parser.app(), "delete", "delete a document, or one of its versions",
                                                 "Examples:\n  oxaqry delete Mail/Inbox/1301 --hosts localhost,2001\n"
                                                 "  oxaqry delete Mail/Inbox/1301/2 --yes --hosts localhost,2001",
                                                 Delete);
  AddDocumentArgument(*remove, removed->document);
  remove->add_flag("--yes", removed->yes, "delete without asking");
}

}  // namespace oxaqrycln::oxaqry
