// The command "user export": the users in the form that "user import" takes, and what that form cannot hold.
#include <filesystem>
#include <fstream>
#include <map>
#include <ostream>
#include <set>
#include <sstream>

#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/csv.h"
#include "tools/oxaqry/users/password.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct ExportRequest {
  std::string path;
  bool mayOverwrite = false;
};

class Exporter {
 public:
  explicit Exporter(UserDatabase& database)
      : database_(database), groups_(LinkedNames(database, "UserID", "GroupID")) {}

  void Add(const WebUser& user, const Variant& password, const Variant& account, const Variant& accountPassword) {
    try {
      if (user.name == kUnreadable) throw CommandError("the name contains characters that are not in Windows-1252");
      if (!user.hasPassword) throw CommandError(user.IsGroup() ? "a group" : "disabled, without a password");
      const std::string& name = user.name;
      database_.Name(name, "the name");
      const std::string decoded = Decoded(password, "the password");
      if (!names_.insert(name).second) throw CommandError("another user of that name is in the file");
      csv_ << CsvField(name) << ',' << CsvField(decoded) << ',' << AccountFields(user, account, accountPassword) << ','
           << CsvField(GroupList(user)) << '\n';
    } catch (const std::runtime_error& error) {
      Note(user, false, error.what());
    }
  }

  std::string Csv() const { return "name,password,archive_user,archive_password,groups\n" + csv_.str(); }
  std::size_t count() const noexcept { return names_.size(); }
  // One entry for everything that is not in the file: the user, whether the rest of the user is, and the reason.
  const Json& notes() const noexcept { return notes_; }

 private:
  void Note(const WebUser& user, bool isExported, const std::string& reason) {
    Json note = JsonOf(user);
    note["exported"] = isExported;
    note["reason"] = reason;
    notes_.push_back(std::move(note));
  }

  // UTF-8. Raises CommandError for a password that the import would refuse.
  std::string Decoded(const Variant& stored, const std::string& what) {
    const std::string password =
        database_.Checked(database_.query().Decode(stored.ToText()), what + " is not an encoded one").ToText();
    RequireStorable(database_.query(), password, what);
    return ToUtf8(password);
  }

  // Both fields, or two empty ones.
  std::string AccountFields(const WebUser& user, const Variant& account, const Variant& accountPassword) {
    const std::string none = ",";
    if (account.ToText().empty() && accountPassword.ToText().empty()) return none;
    try {
      const std::string name = ToUtf8(account.ToText());
      database_.Name(name, "the archive user");
      return CsvField(name) + ',' + CsvField(Decoded(accountPassword, "the archive password"));
    } catch (const std::runtime_error& error) {
      Note(user, true, std::string("without the archive account: ") + error.what());
      return none;
    }
  }

  std::string GroupList(const WebUser& user) {
    std::string list;
    for (const Json& each : groups_[user.id]) {
      const std::string group = each;
      const std::string reason = ObstacleOf(group);
      if (reason.empty()) {
        list += (list.empty() ? "" : ";") + group;
      } else {
        Note(user, true, "without the group \"" + group + "\": " + reason);
      }
    }
    return list;
  }

  // Why the import would not find the group; "" when it would.
  std::string ObstacleOf(const std::string& group) {
    const auto known = obstacles_.find(group);
    if (known != obstacles_.end()) return known->second;
    std::string reason;
    try {
      database_.Group(group);
      if (group.find(';') != std::string::npos) reason = "the name contains \";\"";
    } catch (const CommandError& error) {
      reason = error.what();
    }
    return obstacles_[group] = reason;
  }

  UserDatabase& database_;
  std::map<std::int32_t, Json> groups_;
  std::map<std::string, std::string> obstacles_;
  std::set<std::string> names_;
  std::ostringstream csv_;
  Json notes_ = Json::array();
};

std::string NoteText(const Json& note) {
  const std::string left = note["exported"] == true ? ": " : " is not exported: ";
  return ReadableText(note["name"]) + " (ID " + note["userId"].dump() + ")" + left + ReadableText(note["reason"]) +
         '\n';
}

// The file holds passwords in the clear.
void WriteForOwner(const std::string& path, bool mayOverwrite, const std::string& csv) {
  const Interruption interruption;
  NewFile file(std::filesystem::path(path), mayOverwrite);
  std::ofstream out(file.part(), std::ios::binary);
  std::filesystem::permissions(file.part(), std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  out << csv;
  out.close();
  if (!out) throw CommandError("cannot write \"" + path + "\": is the disk full?");
  interruption.Check();
  file.Commit();
}

int ExportUsers(UserDatabase& database, const ExportRequest& request, const Output& output) {
  const bool isStream = request.path == "-";
  if (isStream && output.json) throw UsageError("--json needs a file: standard output holds the users");
  Exporter exporter(database);
  std::map<std::int32_t, UserDatabase::Row> accounts;
  for (auto& row : database.Rows(4, "SELECT UserID, Passwd, TELOUser, TELOPasswd FROM Users")) {
    const std::int32_t id = row[0].ToLong();
    accounts[id] = std::move(row);
  }
  for (const WebUser& user : database.Users()) {
    if (const auto row = accounts.find(user.id); row != accounts.end()) {
      exporter.Add(user, row->second[1], row->second[2], row->second[3]);
    }
  }
  std::string text = "Exported " + std::to_string(exporter.count()) + (exporter.count() == 1 ? " user" : " users") +
                     "; rights and \"must-change\" are not part of the file\n";
  for (const Json& note : exporter.notes()) text += NoteText(note);
  if (isStream) {
    output.out << exporter.Csv();
    output.err << text;
    return 0;
  }
  WriteForOwner(request.path, request.mayOverwrite, exporter.Csv());
  return PrintResult(output, {{"exported", exporter.count()}, {"notExported", exporter.notes()}}, text);
}

}  // namespace

void AddExport(CommandParser& parser, CLI::App& parent) {
  AddCommand(parser, parent, "export", "write the users with their passwords to a CSV file that \"user import\" takes",
             "Examples:\n  oxaqry user export users.csv --config web.json\n"
             "  oxaqry user export - --config web.json | gpg --encrypt -r admin > users.csv.gpg\n\n"
             "The file contains passwords in the clear; only its owner can read it. Groups, rights and what the\n"
             "form cannot hold are not exported; the command says which users are concerned.",
             ExportUsers, [](CLI::App& command, ExportRequest& request) {
               command.add_option("FILE", request.path, "the new file, \"-\" for standard output")->required();
               command.add_flag("--force", request.mayOverwrite, "overwrite an existing file");
             });
}

}  // namespace oxaqrycln::oxaqry
