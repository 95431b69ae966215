// The commands "create", "edit" and "delete": documents by way of an import file in the blob directory.
#include <algorithm>
#include <ostream>
#include <random>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/blob_directory.h"
#include "tools/oxaqry/cli/input.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/request_watch.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/documents/document_access.h"
#include "tools/oxaqry/documents/document_commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

// An import file's place on this machine, and its path as the query server reaches it.
struct ImportPlace {
  fs::path local;
  std::string remote;
};

ImportPlace PlaceOfImportFile(const Settings& settings, const std::string& wanted) {
  std::error_code absent;
  if (wanted.empty()) {
    const std::string name = "oxaqry-" + std::to_string(std::random_device()()) + ".import";
    return {LocalBlobDirectory(settings) / name, RemoteBlobDirectory(settings) + "\\" + name};
  }
  // The component would write behind what is there.
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
        "the contents are no UTF-8 text within the code page Windows-1252: give --charset, and they are "
        "handed on as they are");
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

// "1262,2" as the document and version of a name. The text is the server's own; another form names no document.
std::optional<DocumentName> NameFrom(const DocumentName& archive, const std::string& idVersion) {
  const std::size_t comma = idVersion.find(',');
  if (comma == std::string::npos || comma == 0 || comma + 1 == idVersion.size()) return std::nullopt;
  if (!IsPrintable(idVersion)) return std::nullopt;
  DocumentName name = archive;
  name.document = ToUtf8(idVersion.substr(0, comma));
  name.version = ToUtf8(idVersion.substr(comma + 1));
  return name;
}

void PrintResult(const Output& output, const char* what, const DocumentName& archive, const std::string& idVersion) {
  const auto name = NameFrom(archive, idVersion);
  if (output.json) {
    output.out << Json{{"name", name ? Json(ToText(*name)) : Json(nullptr)}, {"idVersion", ToUtf8(idVersion)}}.dump(2)
               << '\n';
  } else {
    output.out << what << (name ? ToText(*name) : Printable(idVersion)) << '\n';
  }
}

std::string CurrentTitle(clsQuery& query, const DocumentKey& key) {
  Variant title;
  Variant status;
  const Variant lines = query.TELOGetDocumentInfo(key.channel, key.archive, key.document, key.version, nullptr, nullptr,
                                                  nullptr, &title, nullptr, nullptr, nullptr, nullptr, &status);
  if (Count(lines, status) == 0) throw CommandError("the query server knows nothing about this document");
  return ToUtf8(title.ToText());
}

}  // namespace

int Create(const Settings& settings, const CreateRequest& request, const Output& output) {
  const DocumentName archive{request.channel, request.archive, "", ""};
  const std::string text = ReadContents(request.contents, output.in);
  const ImportPlace place = PlaceOfImportFile(settings, request.contents.importFile);
  const Interruption interruption;
  const auto query = settings.Connect();
  PassingFile passing(place.local);
  WriteImportFile(*query, place, archive, request.contents, text);
  Variant idVersion;
  Variant status;
  {
    const RequestWatch watch(interruption);
    const Variant result = query->TELOCreateDocument(place.remote, &idVersion, &status);
    interruption.Check();
    Count(result, status);
  }
  if (!request.contents.importFile.empty()) passing.Keep();
  PrintResult(output, "Created ", archive, idVersion.ToText());
  return 0;
}

int Edit(const Settings& settings, const EditRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  DocumentContents contents = request.contents;
  const std::string text = ReadContents(contents, output.in);
  const ImportPlace place = PlaceOfImportFile(settings, contents.importFile);
  const Interruption interruption;
  const auto query = settings.Connect();
  const RequestWatch watch(interruption);
  if (contents.title.empty()) contents.title = CurrentTitle(*query, key);
  interruption.Check();
  PassingFile passing(place.local);
  WriteImportFile(*query, place, request.document, contents, text);
  Variant idVersion = key.version.empty() ? key.document : key.document + "," + key.version;
  Variant status;
  const Variant result = query->TELOEditDocument(place.remote, idVersion, &status);
  interruption.Check();
  Count(result, status);
  if (!contents.importFile.empty()) passing.Keep();
  PrintResult(output, "New version ", request.document, idVersion.ToText());
  return 0;
}

int Delete(const Settings& settings, const DeleteRequest& request, const Output& output) {
  const DocumentKey key(request.document);
  const std::string name = ToText(request.document);
  Confirm("Delete " + name + (key.version.empty() ? " with all its versions?" : "?"), request.yes, output);
  const auto query = settings.Connect();
  Variant status;
  Count(query->TELODeleteDocument(key.channel, key.archive, key.document, key.version, &status), status);
  if (output.json) {
    output.out << Json{{"name", name}, {"deleted", true}}.dump(2) << '\n';
  } else {
    output.out << "Deleted " << name << '\n';
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
