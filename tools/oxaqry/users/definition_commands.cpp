// The commands "user doc-rights" and "user search-rights": what restricts a user in an archive, by definitions granted
// to the user and to the user's groups.
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/lists.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct DefinitionRequest {
  UserName user;
  ArchiveArguments archive;
};

void AddOptions(CLI::App& command, DefinitionRequest& request) {
  AddUserName(command, request.user);
  AddArchiveArguments(command, request.archive);
}

// What the methods take.
struct UserAndArchive {
  UserAndArchive(UserDatabase& database, const DefinitionRequest& request)
      : channel(database.Entry(request.archive.channel, "the channel")),
        archive(database.Entry(request.archive.archive, "the archive")),
        user(database.User(request.user)) {}
  Json ToJson() const {
    Json json = JsonOf(user);
    json["channel"] = ToUtf8(channel);
    json["archive"] = ToUtf8(archive);
    return json;
  }
  std::string channel;
  std::string archive;
  WebUser user;
};

int ShowDocumentRights(UserDatabase& database, const DefinitionRequest& request, const Output& output) {
  const UserAndArchive key(database, request);
  Variant lines;
  database.Checked(database.query().GetUserDocRights(key.user.id, key.channel, key.archive, &lines),
                   "the document rights cannot be read");
  Json json = key.ToJson();
  json["conditions"] = LineObjects(lines.ToText(), 2, {"definition", "field", "operator", "value", "type"});
  return PrintResult(output, json,
                     TableText(output, json["conditions"],
                               {{"Definition", "definition"},
                                {"Field", "field"},
                                {"Operator", "operator"},
                                {"Value", "value"},
                                {"Type", "type"}}));
}

int ShowSearchRights(UserDatabase& database, const DefinitionRequest& request, const Output& output) {
  const UserAndArchive key(database, request);
  Variant values;
  Variant hidden;
  Variant noMatchcode;
  database.Checked(
      database.query().GetUserSearchRights(key.user.id, key.channel, key.archive, &values, &hidden, &noMatchcode),
      "the search rights cannot be read");
  Json json = key.ToJson();
  json["fixedValues"] = LineObjects(values.ToText(), 1, {"field", "value"});
  json["hiddenFields"] = IdEntries(hidden.ToText());
  json["noMatchcodeFields"] = IdEntries(noMatchcode.ToText());
  Json rows = Json::array();
  for (Json row : json["fixedValues"]) {
    row["kind"] = "fixed value";
    rows.push_back(std::move(row));
  }
  for (const Json& field : json["hiddenFields"]) rows.push_back({{"kind", "hidden"}, {"field", field}});
  for (const Json& field : json["noMatchcodeFields"]) rows.push_back({{"kind", "no matchcode"}, {"field", field}});
  return PrintResult(output, json, TableText(output, rows, {{"Kind", "kind"}, {"Field", "field"}, {"Value", "value"}}));
}

}  // namespace

void AddDefinitionCommands(CommandParser& parser, CLI::App& parent) {
  AddCommand(
      parser, parent, "doc-rights", "list the conditions that documents of an archive must meet to be shown to a user",
      "Example:\n  oxaqry user doc-rights anna Finance/Invoices --config web.json", ShowDocumentRights, AddOptions);
  AddCommand(parser, parent, "search-rights", "list what restricts a user's searches in an archive",
             "Example:\n  oxaqry user search-rights anna Finance/Invoices --config web.json", ShowSearchRights,
             AddOptions);
}

}  // namespace oxaqrycln::oxaqry
