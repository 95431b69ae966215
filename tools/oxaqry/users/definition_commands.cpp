// The commands "user doc-rights" and "user search-rights": what restricts a user in an archive, by definitions granted
// to the user and to the user's groups.
#include "tools/oxaqry/users/commands.h"

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

Json KeyOf(const WebUser& user, const ArchiveArguments& archive) {
  Json json = JsonOf(user);
  json["channel"] = archive.channel;
  json["archive"] = archive.archive;
  return json;
}

int ShowDocumentRights(UserDatabase& database, const DefinitionRequest& request, const Output& output) {
  const WebUser user = database.User(request.user);
  Json json = KeyOf(user, request.archive);
  json["conditions"] = Json::array();
  for (const client::DocumentCondition& each :
       database.OnLayer().DocumentConditions(user.id, request.archive.channel, request.archive.archive)) {
    json["conditions"].push_back({{"definition", JsonId(each.definition)},
                                  {"field", JsonId(each.fieldId)},
                                  {"operator", each.comparison},
                                  {"value", each.value},
                                  {"type", each.type}});
  }
  return PrintResult(output, json,
                     TableText(output, json["conditions"],
                               {{"Definition", "definition"},
                                {"Field", "field"},
                                {"Operator", "operator"},
                                {"Value", "value"},
                                {"Type", "type"}}));
}

int ShowSearchRights(UserDatabase& database, const DefinitionRequest& request, const Output& output) {
  const WebUser user = database.User(request.user);
  const client::SearchRights rights =
      database.OnLayer().RightsToSearch(user.id, request.archive.channel, request.archive.archive);
  Json json = KeyOf(user, request.archive);
  Json rows = Json::array();
  json["fixedValues"] = Json::array();
  for (const auto& [field, value] : rights.fixedValues) {
    json["fixedValues"].push_back({{"field", JsonId(field)}, {"value", value}});
    rows.push_back({{"kind", "fixed value"}, {"field", JsonId(field)}, {"value", value}});
  }
  const auto addFields = [&](const char* member, const char* kind, const std::vector<std::string>& fields) {
    json[member] = Json::array();
    for (const std::string& field : fields) {
      json[member].push_back(JsonId(field));
      rows.push_back({{"kind", kind}, {"field", JsonId(field)}});
    }
  };
  addFields("hiddenFields", "hidden", rights.hiddenFields);
  addFields("noMatchcodeFields", "no matchcode", rights.fieldsWithoutMatchcode);
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
