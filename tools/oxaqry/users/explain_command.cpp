// The command "user explain".
#include <algorithm>
#include <array>
#include <ostream>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

using Numbers = std::array<std::int32_t, 3>;  // new, edit, delete

// An entry that counts for a user: his own, which comes first, or that of a group of his.
struct Source {
  std::int32_t id;
  std::string name;
  Numbers numbers{};  // of edit rights
};

struct Question {
  const char* kind;
  const char* table;
  std::string condition;
  std::string entry;  // UTF-8
  std::string words;
  bool isEdit = false;
};

Question QuestionOf(const UserDatabase& database, const ExplainRequest& request) {
  if (request.right) {
    const std::string number = std::to_string(*request.right);
    return {"right", "UserRights", "RightID=" + number, number, "right " + number};
  }
  if (request.edit) {
    const std::string archive = database.Literal(database.Entry(*request.edit, "the archive"));
    return {"edit", "UserEditRights", "Archive=" + archive, *request.edit, "edit rights in " + *request.edit, true};
  }
  if (request.archive) {
    const std::string archive = database.Literal(database.Entry(*request.archive, "the archive"));
    return {"archive", "UserArchives", "Archive=" + archive, *request.archive, "archive " + *request.archive};
  }
  const std::string channel = request.channel.value_or("");
  return {"channel", "UserChannels", "Channel=" + database.Literal(database.Entry(channel, "the channel")), channel,
          "channel " + channel};
}

std::vector<Source> FindSources(UserDatabase& database, const WebUser& user, const Question& question) {
  const std::string id = std::to_string(user.id);
  std::vector<Source> sources;
  for (const auto& row : database.Rows(
           "SELECT Users.UserID, Users.UserName" + std::string(question.isEdit ? ", New, Edit, Del" : ", 0, 0, 0") +
               " FROM Users, " + question.table + " WHERE Users.UserID=" + question.table + ".UserID AND " +
               question.condition + " AND (Users.UserID=" + id +
               " OR Users.UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=" + id + ")) ORDER BY Users.UserName",
           5)) {
    sources.push_back({row[0].ToLong(), row[1].ToText(), {row[2].ToLong(), row[3].ToLong(), row[4].ToLong()}});
  }
  std::stable_partition(sources.begin(), sources.end(), [&](const Source& source) { return source.id == user.id; });
  return sources;
}

Numbers SumOf(const std::vector<Source>& sources) {
  Numbers sum{};
  for (const Source& source : sources) {
    for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += source.numbers[i];
  }
  return sum;
}

// Of edit rights it is the sum of the entries that counts.
bool IsHeld(const std::vector<Source>& sources, bool isEdit) {
  const Numbers sum = SumOf(sources);
  return isEdit ? sum[0] > 0 || sum[1] > 0 || sum[2] > 0 : !sources.empty();
}

Json JsonOf(const Numbers& numbers) { return {{"new", numbers[0]}, {"edit", numbers[1]}, {"delete", numbers[2]}}; }

void PrintJson(const WebUser& user, const Question& question, const std::vector<Source>& sources, std::ostream& out) {
  Json list = Json::array();
  for (const Source& source : sources) {
    Json each{{"source", source.id == user.id ? "own" : "group"}, {"userId", source.id}, {"name", ToUtf8(source.name)}};
    if (question.isEdit) each["numbers"] = JsonOf(source.numbers);
    list.push_back(std::move(each));
  }
  Json json{{"userId", user.id}, {"name", ToUtf8(user.name)}, {"kind", question.kind}, {"entry", question.entry}};
  json["held"] = IsHeld(sources, question.isEdit);
  if (question.isEdit) json["sum"] = JsonOf(SumOf(sources));
  json["sources"] = std::move(list);
  out << json.dump(2) << '\n';
}

void PrintTable(const WebUser& user, const Question& question, const std::vector<Source>& sources, std::ostream& out) {
  const bool isHeld = IsHeld(sources, question.isEdit);
  out << Printable(user.name) << (isHeld ? " has " : " does not have ") << question.words << '\n';
  if (sources.empty()) return;
  std::vector<std::string> titles{"From", "ID"};
  if (question.isEdit) titles.insert(titles.end(), {"New", "Edit", "Delete"});
  Table table(titles);
  const auto add = [&](std::vector<std::string> cells, const Numbers& numbers) {
    for (std::size_t i = 0; i < numbers.size() && question.isEdit; ++i) cells.push_back(std::to_string(numbers[i]));
    table.Add(std::move(cells));
  };
  for (const Source& source : sources) {
    add({source.id == user.id ? "own entry" : "group " + Printable(source.name), std::to_string(source.id)},
        source.numbers);
  }
  if (question.isEdit) add({"sum, allowed above 0", ""}, SumOf(sources));
  table.Print(out);
}

}  // namespace

int ExplainRight(const Settings& settings, const ExplainRequest& request, const Output& output) {
  UserDatabase database(settings);
  const Question question = QuestionOf(database, request);
  const WebUser user = database.User(request.user);
  const std::vector<Source> sources = FindSources(database, user, question);
  (output.json ? PrintJson : PrintTable)(user, question, sources, output.out);
  return IsHeld(sources, question.isEdit) ? 0 : 1;
}

}  // namespace oxaqrycln::oxaqry
