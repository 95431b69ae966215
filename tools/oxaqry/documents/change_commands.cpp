// The commands "create", "edit" and "delete": documents through an import file in the blob directory.
#include <random>

#include "tools/oxaqry/cli/blob_directory.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/document_access.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

// The content of a new document or version.
struct DocumentContents {
  std::string title;
  std::vector<std::string> fields;  // TYPE:ID each
  std::string source;               // the path of a file, or "-" for standard input
  std::string charset;              // of the bytes of the source; "" for UTF-8, which is converted
  std::string importFile;           // the path of an import file to keep; "" for a temporary one
};

struct ChangeRequest {
  DocumentName document;  // of a new document only the channel and archive
  DocumentContents contents;
};

struct DeleteRequest {
  DocumentName document;
  bool yes = false;  // without asking
};

// The place of an import file on this machine, and its path as the query server reaches it.
struct ImportPlace {
  fs::path local;
  std::string remote;
};

ImportPlace ImportFilePlace(const Settings& settings, const std::string& wanted) {
  std::error_code absent;
  if (wanted.empty()) {
    const std::string name = "oxaqry-" + std::to_string(std::random_device()()) + ".import";
    return {LocalBlobDirectory(settings) / name, RemoteBlobDirectory(settings) + "\\" + name};
  }
  // The component would append to an existing file.
  if (fs::exists(fs::symlink_status(wanted, absent))) {
    throw CommandError("\"" + wanted + "\" exists: name another file with --import-file");
  }
  const fs::path path = fs::absolute(wanted);
  const bool isBlob = !settings.Text("strBlobPathLocal").empty() &&
                      fs::equivalent(path.parent_path(), LocalBlobDirectory(settings), absent);
  if (!isBlob) return {path, ComponentPath(path)};
  return {path, RemoteBlobDirectory(settings) + "\\" + ComponentPath(path.filename())};
}

// The field types and ids as two lists separated by commas.
struct FieldLists {
  std::string types;
  std::string ids;
};

FieldLists ListsOf(const std::vector<std::string>& fields) {
  FieldLists lists;
  for (const std::string& field : fields) {
    const std::size_t colon = field.find(':');
    const bool isPair = colon != std::string::npos && colon > 0 && colon + 1 < field.size();
    if (!isPair || field.find(',') != std::string::npos) {
      throw UsageError("--field takes TYPE:ID, not \"" + field + "\"");
    }
    const char* const separator = lists.types.empty() ? "" : ",";
    lists.types += separator + field.substr(0, colon);
    lists.ids += separator + field.substr(colon + 1);
  }
  return lists;
}

// The contents as they go into the import file.
std::string ReadContents(const DocumentContents& contents, std::istream& in) {
  std::string bytes = ReadAll(contents.source, in);
  if (!contents.charset.empty()) return bytes;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kByteOrderMark)) bytes.erase(0, kByteOrderMark.size());
  const auto text = FromUtf8(bytes);
  if (!text) {
    throw CommandError(
        "the contents are not UTF-8 text within the code page Windows-1252: give --charset to send them byte for byte");
  }
  return *text;
}

// A text of the command line in the import file's character set.
std::string InCharset(const std::string& utf8, const std::string& charset) {
  const std::string name = UpperCase(charset);
  return name == "UTF-8" || name == "UTF8" ? utf8 : TextFromUtf8(utf8);
}

void WriteImportFile(clsQuery& query, const ImportPlace& place, const DocumentName& document,
                     const DocumentContents& contents, const std::string& text) {
  const FieldLists lists = ListsOf(contents.fields);
  const auto own = [&](const std::string& utf8) { return InCharset(utf8, contents.charset); };
  const Variant charset = contents.charset.empty() ? Missing : Variant(TextFromUtf8(contents.charset));
  const Variant result =
      query.CreateImportFile(ComponentPath(place.local), own(document.channel), own(document.archive),
                             own(contents.title), own(lists.types), own(lists.ids), text, charset);
  if (result.ToLong() < 0) {
    throw CommandError("the import file \"" + place.local.string() +
                       "\" cannot be written: check that its directory is writable");
  }
}

// The document and version of "1262,2", which the server composes; nothing for a text of another form.
std::optional<DocumentName> NameFrom(const DocumentName& archive, const std::string& idVersion) {
  const std::size_t comma = idVersion.find(',');
  if (comma == std::string::npos || comma == 0 || comma + 1 == idVersion.size()) return std::nullopt;
  if (!IsPrintable(idVersion)) return std::nullopt;
  DocumentName name = archive;
  name.document = ToUtf8(idVersion.substr(0, comma));
  name.version = ToUtf8(idVersion.substr(comma + 1));
  return name;
}

// Writes the import file, has the server read it and prints the document that ask(remote path) names.
template <typename Ask>
void Import(ArchiveQuery& archive, const ImportPlace& place, const ChangeRequest& request, const std::string& text,
            const char* what, const Output& output, Ask&& ask) {
  TemporaryFile importFile(place.local);
  WriteImportFile(archive.query(), place, request.document, request.contents, text);
  const std::string idVersion = ask(place.remote);
  if (!request.contents.importFile.empty()) importFile.Keep();
  const auto name = NameFrom(request.document, idVersion);
  PrintResult(output, {{"name", name ? Json(ToText(*name)) : Json(nullptr)}, {"idVersion", ToUtf8(idVersion)}},
              what + (name ? ToText(*name) : Printable(idVersion)));
}

int Create(const Settings& settings, const ChangeRequest& request, const Output& output) {
  const std::string text = ReadContents(request.contents, output.in);
  const ImportPlace place = ImportFilePlace(settings, request.contents.importFile);
  const Interruption interruption;
  ArchiveQuery archive(settings, output);
  archive.Watch(interruption);
  Import(archive, place, request, text, "Created ", output, [&](const std::string& remote) {
    Variant idVersion;
    archive.Count(archive->TELOCreateDocument(remote, &idVersion, archive.status()));
    return idVersion.ToText();
  });
  return 0;
}

std::string CurrentTitle(ArchiveQuery& archive, const DocumentKey& key) {
  Variant title;
  const std::int32_t lines = archive.Count(
      archive->TELOGetDocumentInfo(key.channel, key.archive, key.document, key.version, nullptr, nullptr, nullptr,
                                   &title, nullptr, nullptr, nullptr, nullptr, archive.status()));
  if (lines == 0) throw CommandError("the query server knows nothing about this document");
  return ToUtf8(title.ToText());
}

int Edit(const Settings& settings, const ChangeRequest& given, const Output& output) {
  ChangeRequest request = given;
  const DocumentKey key(request.document);
  const std::string text = ReadContents(request.contents, output.in);
  const ImportPlace place = ImportFilePlace(settings, request.contents.importFile);
  const Interruption interruption;
  ArchiveQuery archive(settings, output);
  archive.Watch(interruption);
  if (request.contents.title.empty()) request.contents.title = CurrentTitle(archive, key);
  Import(archive, place, request, text, "New version ", output, [&](const std::string& remote) {
    Variant idVersion = key.version.empty() ? key.document : key.document + "," + key.version;
    archive.Count(archive->TELOEditDocument(remote, idVersion, archive.status()));
    return idVersion.ToText();
  });
  return 0;
}

int Delete(const Settings& settings, const DeleteRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  const std::string name = ToText(request.document);
  Confirm("Delete " + name + (key.version.empty() ? " with all its versions?" : "?"), request.yes, output);
  ArchiveQuery archive(settings, output);
  archive.Count(archive->TELODeleteDocument(key.channel, key.archive, key.document, key.version, archive.status()));
  return PrintResult(output, {{"name", name}, {"deleted", true}}, "Deleted " + name);
}

void AddContents(CLI::App& command, DocumentContents& contents) {
  command
      .add_option("--field", contents.fields, "type and id of a field, in the order of the contents; may be repeated")
      ->allow_extra_args(false)
      ->type_name("TYPE:ID");
  command
      .add_option(
          "--contents", contents.source,
          "file with the contents of the fields, in the layout that the query server expects; \"-\" is standard "
          "input")
      ->required()
      ->type_name("FILE");
  command
      .add_option("--charset", contents.charset,
                  "character set of the contents, which are then sent byte for byte (default: UTF-8, converted to "
                  "Windows-1252)")
      ->type_name("CS");
  command
      .add_option("--import-file", contents.importFile,
                  "write the import file to this path, where no file may exist, and keep it (default: a temporary one "
                  "in the blob directory)")
      ->type_name("FILE");
}

}  // namespace

void AddChangeCommands(CommandParser& parser) {
  const auto [create, created] = parser.AddQuery(
      parser.app(), "create", "create a document",
      "Examples:\n"
      "  oxaqry create --channel Mail --archive Inbox --title 'Oak shelves' --field 1:7 --contents letter.txt \\\n"
      "    --blob-local /srv/blobs --hosts localhost,2001\n"
      "  echo 'Thank you' | oxaqry create --channel Mail --archive Outbox --title Reply --field 1:7 --contents - \\\n"
      "    --blob-local /srv/blobs --hosts localhost,2001",
      Create);
  create->add_option("--channel", created->document.channel, "the channel")->required()->type_name("C");
  create->add_option("--archive", created->document.archive, "the archive in that channel")->required()->type_name("A");
  create->add_option("--title", created->contents.title, "the document's title")->required()->type_name("T");
  AddContents(*create, created->contents);
  const auto [edit, edited] = parser.AddQuery(
      parser.app(), "edit", "make a new version of a document",
      "Example:\n  oxaqry edit Mail/Inbox/1301/1 --field 1:7 --contents letter.txt --blob-local /srv/blobs \\\n"
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
