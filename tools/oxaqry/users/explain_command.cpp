// The command "user explain".
#include <algorithm>
#include <array>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/users/archive_names.h"
#include "tools/oxaqry/users/commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

enum class Kind { Right, Edit, Archive, Channel };

// What a user may have: the option that asks for it, and the table of its entries.
struct EntryKind {
  Kind kind;
  const char* name;
  const char* option;
  const char* valueName;
  const char* meaning;
  const char* table;
  const char* column;
  const char* words;
};
constexpr std::array kKinds{
    EntryKind{Kind::Right, "right", "RIGHT", "", "a general right", "UserRights", "RightID", "right "},
    EntryKind{Kind::Edit, "edit", "--edit", "ARCHIVE", "the edit rights in an archive instead", "UserEditRights",
              "Archive", "edit rights in "},
    EntryKind{Kind::Archive, "archive", "--archive", "A", "visibility of an archive instead", "UserArchives", "Archive",
              "archive "},
    EntryKind{Kind::Channel, "channel", "--channel", "C", "visibility of a channel instead", "UserChannels", "Channel",
              "channel "}};

struct ExplainRequest {
  UserName user;
  const EntryKind* kind = nullptr;
  std::string entry;
};

Variant EntryValue(const UserDatabase& database, const ExplainRequest& request) {
  const Kind kind = request.kind->kind;
  if (kind == Kind::Right) return *ParseInteger(request.entry);
  if (kind == Kind::Channel) return database.Name(request.entry, "the channel");
  return database.Name(ArchiveEntryOf(request.entry), "the archive");
}

constexpr std::array kActions{"new", "edit", "delete"};

// The entries that count for the user: the user's own first, then those of the groups. Those of edit rights have the
// numbers of kActions.
Json FindSources(UserDatabase& database, const WebUser& user, const EntryKind& kind, const Variant& value) {
  const std::string table = kind.table;
  const bool isEdit = kind.kind == Kind::Edit;
  Json sources = Json::array();
  for (const auto& row :
       database.Rows(6,
                     "SELECT Users.UserID, Users.UserName, CASE WHEN Users.UserID=? THEN 'own' ELSE 'group' END, " +
                         std::string(isEdit ? "New, Edit, Del" : "0, 0, 0") + " FROM Users, " + table +
                         " WHERE Users.UserID=" + table + ".UserID AND " + kind.column +
                         "=? AND (Users.UserID=? OR Users.UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=?))"
                         " ORDER BY 3 DESC, 2",
                     {user.id, value, user.id, user.id})) {
    Json source{{"source", row[2].ToText()}, {"userId", row[0].ToLong()}, {"name", ToUtf8(row[1].ToText())}};
    for (std::size_t i = 0; isEdit && i < kActions.size(); ++i) source["numbers"][kActions[i]] = row[3 + i].ToLong();
    sources.push_back(std::move(source));
  }
  return sources;
}

Json SumOf(const Json& sources) {
  Json sum;
  for (const char* action : kActions) {
    std::int32_t total = 0;
    for (const Json& source : sources) total += source["numbers"][action].get<std::int32_t>();
    sum[action] = total;
  }
  return sum;
}

std::string SourceTable(const Output& output, const Json& sources, const Json& sum) {
  std::vector<Column> columns{{"From", "from"}, {"ID", "userId"}};
  if (!sum.empty()) columns.insert(columns.end(), {{"New", "new"}, {"Edit", "edit"}, {"Delete", "delete"}});
  Json rows = Json::array();
  for (const Json& source : sources) {
    Json row = source.value("numbers", Json::object());
    row["from"] = source["source"] == "own" ? "own entry" : "group " + source["name"].get<std::string>();
    row["userId"] = source["userId"];
    rows.push_back(std::move(row));
  }
  if (!sum.empty()) {
    rows.push_back(sum);
    rows.back()["from"] = "sum, allowed above 0";
  }
  return TableText(output, rows, columns);
}

int Explain(UserDatabase& database, const ExplainRequest& request, const Output& output) {
  const EntryKind& kind = *request.kind;
  const bool isEdit = kind.kind == Kind::Edit;
  const Variant value = EntryValue(database, request);
  const WebUser user = database.User(request.user);
  const Json sources = FindSources(database, user, kind, value);
  // The numbers of edit rights are added up.
  const Json sum = isEdit ? SumOf(sources) : Json();
  const bool isHeld =
      isEdit ? std::ranges::any_of(sum, [](const Json& number) { return number > 0; }) : !sources.empty();
  Json json = JsonOf(user);
  json["kind"] = kind.name;
  json["entry"] = ToUtf8(value.ToText());
  json["held"] = isHeld;
  if (isEdit) json["sum"] = sum;
  json["sources"] = sources;
  std::string text = Printable(user.name) + (isHeld ? " has " : " does not have ") + kind.words +
                     Printable(ToUtf8(value.ToText())) + "\n";
  if (!sources.empty()) text += SourceTable(output, sources, sum);
  PrintResult(output, json, text);
  return isHeld ? 0 : 1;
}

}  // namespace

void AddExplain(CommandParser& parser, CLI::App& parent) {
  AddCommand(
      parser, parent, "explain", "show which entries give a user a right; exit status 0 when the user has it, else 1",
      "Examples:\n  oxaqry user explain anna 3 --config web.json\n"
      "  oxaqry user explain anna --edit Finance/Invoices --config web.json",
      Explain, [](CLI::App& command, ExplainRequest& request) {
        AddUserName(command, request.user);
        std::vector<const CLI::Option*> options;
        for (const EntryKind& kind : kKinds) {
          const auto take = [&request, &kind](const std::string& entry) {
            request.kind = &kind;
            request.entry = entry;
          };
          CLI::Option* const option = command.add_option_function<std::string>(kind.option, take, kind.meaning);
          option->type_name(kind.valueName);
          if (kind.kind == Kind::Right) option->check(WholeNumber());
          options.push_back(option);
        }
        RequireOptions(command, std::move(options), 1, "give one right: a number, --edit, --archive or --channel");
      });
}

}  // namespace oxaqrycln::oxaqry
