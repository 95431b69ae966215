// The commands "user grant" and "user revoke": entries of the user's own; those of the user's groups stay as they are.
#include <algorithm>
#include <array>

#include "tools/oxaqry/users/archive_names.h"
#include "tools/oxaqry/users/commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// The edit rights of one archive.
struct EditGrant {
  std::string text;  // as it was given
  std::string archive;
  std::array<bool, 3> letters{};  // new, edit, delete
};

struct GrantRequest {
  bool isGrant = false;  // else the rights are revoked
  UserName user;
  std::vector<std::int32_t> rights;
  std::vector<std::int32_t> documentRights;
  std::vector<std::int32_t> searchRights;
  std::vector<EditGrant> edits;
  std::vector<std::string> archives;
  std::vector<std::string> channels;
  std::vector<std::string> groups;
};

EditGrant ParseEdit(const std::string& text) {
  const std::size_t sign = text.rfind('=');
  if (sign == std::string::npos || sign + 1 == text.size()) {
    throw CLI::ValidationError("--edit takes ARCHIVE=LETTERS with letters of N, E and D, not \"" + text + "\"");
  }
  EditGrant grant{text, text.substr(0, sign), {}};
  for (const char letter : text.substr(sign + 1)) {
    const std::size_t index = std::string_view("NED").find(letter);
    if (index == std::string_view::npos) {
      throw CLI::ValidationError("--edit takes the letters N (new), E (edit) and D (delete), not \"" +
                                 text.substr(sign + 1) + "\"");
    }
    grant.letters[index] = true;
  }
  return grant;
}

class Changes {
 public:
  Changes(UserDatabase& database, const GrantRequest& request)
      : database_(database), user_(database.User(request.user)), isGrant_(request.isGrant) {}

  // An entry that the user has or has not. The value is that of the column, shown is UTF-8.
  void Change(const char* kind, const std::string& table, const std::string& column, const Variant& value,
              const std::string& shown) {
    const std::string entry = table + " WHERE UserID=? AND " + column + "=?";
    const bool isThere = database_.Exists(entry, {user_.id, value});
    if (isGrant_ && !isThere) {
      database_.Execute("INSERT INTO " + table + "(UserID," + column + ") VALUES (?, ?)", {user_.id, value});
    }
    if (!isGrant_ && isThere) database_.Execute("DELETE FROM " + entry, {user_.id, value});
    Record(kind, shown, isThere != isGrant_);
  }

  // Definitions are created by other means. A grant of one that does not exist would go unnoticed, as it restricts
  // nothing.
  void ChangeDefinition(const char* kind, const std::string& definitions, const std::string& column, std::int32_t id) {
    if (isGrant_ && !database_.Exists(definitions + " WHERE " + column + "=?", {id})) {
      throw CommandError("there is no " + std::string(kind) + " " + std::to_string(id) + " in the table " +
                         definitions);
    }
    Change(kind, "User" + definitions, column, id, std::to_string(id));
  }

  void ChangeArchive(const std::string& name) {
    Change("archive", "UserArchives", "Archive", Archive(name, "the archive"), name);
  }

  void ChangeChannel(const std::string& name) {
    const Variant entry = isGrant_ ? database_.ChannelEntry(name, "the channel") : database_.Name(name, "the channel");
    Change("channel", "UserChannels", "Channel", entry, name);
  }

  void ChangeMembership(const std::string& group) {
    const WebUser found = database_.Group(group);
    if (isGrant_ && user_.IsGroup()) {
      throw CommandError("\"" + user_.name + "\" is itself a group, and groups of groups give no rights");
    }
    Change("group", "UserGroups", "GroupID", found.id, group);
  }

  void ChangeEdit(const EditGrant& grant) {
    using Numbers = std::array<std::int32_t, 3>;
    const std::string archive = Archive(grant.archive, "the archive of --edit");
    const UserDatabase::Values key{user_.id, archive};
    const std::string condition = " WHERE UserID=? AND Archive=?";
    const auto rows = database_.Rows(3, "SELECT New, Edit, Del FROM UserEditRights" + condition, key);
    Numbers former{};
    for (std::size_t i = 0; i < former.size() && !rows.empty(); ++i) former[i] = rows[0][i].ToLong();
    Numbers wanted = former;
    // A negative number of the user's own takes away what the groups give; it stays when a right is revoked.
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (grant.letters[i]) wanted[i] = isGrant_ ? std::max(wanted[i], 1) : std::min(wanted[i], 0);
    }
    Record("edit", grant.text, wanted != former);
    if (wanted == former) return;
    if (wanted == Numbers{}) {
      database_.Execute("DELETE FROM UserEditRights" + condition, key);
      return;
    }
    const char* const statement = rows.empty()
                                      ? "INSERT INTO UserEditRights(New,Edit,Del,UserID,Archive) VALUES (?, ?, ?, ?, ?)"
                                      : "UPDATE UserEditRights SET New=?, Edit=?, Del=? WHERE UserID=? AND Archive=?";
    database_.Execute(statement, {wanted[0], wanted[1], wanted[2], user_.id, archive});
  }

  int PrintTo(const Output& output, const std::vector<std::string>& warnings) const {
    Json json = JsonOf(user_);
    json["changes"] = changes_;
    for (const std::string& warning : warnings) Warn(output, warning);
    return PrintResult(output, json, text_);
  }

 private:
  // An entry that another program has stored can be revoked whatever it contains.
  std::string Archive(const std::string& name, const std::string& what) const {
    const std::string entry = ArchiveEntryOf(name);
    return isGrant_ ? database_.ArchiveEntry(entry, what) : database_.Name(entry, what);
  }

  void Record(const std::string& kind, const std::string& shown, bool isChanged) {
    changes_.push_back({{"kind", kind}, {"entry", shown}, {"changed", isChanged}});
    std::string words = kind + ' ' + shown;
    if (isChanged) {
      words.insert(0, isGrant_ ? "Granted " : "Revoked ");
    } else {
      words.front() = UpperCase(words.front());
      words += isGrant_ ? " was already granted" : " was not granted";
    }
    text_ += words + '\n';
  }

  UserDatabase& database_;
  const WebUser user_;
  const bool isGrant_;
  std::string text_;
  Json changes_ = Json::array();
};

// A right in an archive that does not exist would go unnoticed.
std::vector<std::string> WarningsOf(const UserDatabase& database, const GrantRequest& request, const Output& output) {
  if (!request.isGrant) return {};
  std::vector<std::string> archives;
  for (const std::string& archive : request.archives) archives.push_back(ArchiveEntryOf(archive));
  for (const EditGrant& grant : request.edits) archives.push_back(ArchiveEntryOf(grant.archive));
  return UnknownNameWarnings(database.settings(), request.channels, archives, output);
}

// Makes all of the changes or none.
int ChangeGrants(UserDatabase& database, const GrantRequest& request, const Output& output) {
  Changes changes(database, request);
  UserTransaction transaction(database);
  for (const std::int32_t id : request.rights) {
    changes.Change("right", "UserRights", "RightID", id, std::to_string(id));
  }
  for (const std::int32_t id : request.documentRights)
    changes.ChangeDefinition("doc-right", "DocRights", "DocRightID", id);
  for (const std::int32_t id : request.searchRights) {
    changes.ChangeDefinition("search-right", "SearchRights", "SearchRightID", id);
  }
  for (const EditGrant& grant : request.edits) changes.ChangeEdit(grant);
  for (const std::string& name : request.archives) changes.ChangeArchive(name);
  for (const std::string& name : request.channels) changes.ChangeChannel(name);
  for (const std::string& name : request.groups) changes.ChangeMembership(name);
  transaction.Commit();
  return changes.PrintTo(output, WarningsOf(database, request, output));
}

void AddGrants(CLI::App& command, GrantRequest& request) {
  AddUserName(command, request.user);
  const auto addEdits = [&request](const std::vector<std::string>& texts) {
    for (const std::string& text : texts) request.edits.push_back(ParseEdit(text));
  };
  const std::vector<CLI::Option*> numbers{
      command.add_option("--right", request.rights, "a general right; all of these options may be repeated"),
      command.add_option("--doc-right", request.documentRights, "a definition of document rights, by its ID"),
      command.add_option("--search-right", request.searchRights, "a definition of search rights, by its ID")};
  for (CLI::Option* const option : numbers) option->check(WholeNumber())->type_name("N");
  std::vector<CLI::Option*> options{
      command
          .add_option_function<std::vector<std::string>>(
              "--edit", addEdits, "edit rights in an archive: the letters of N (new), E (edit), D (delete)")
          ->type_name("ARCHIVE=NED"),
      command.add_option("--archive", request.archives, "visibility of an archive, CHANNEL/ARCHIVE")->type_name("A"),
      command.add_option("--channel", request.channels, "visibility of a channel")->type_name("C"),
      command.add_option("--group", request.groups, "membership in a group")->type_name("G")};
  options.insert(options.end(), numbers.begin(), numbers.end());
  for (CLI::Option* const option : options) option->allow_extra_args(false);
  RequireOptions(command, {options.begin(), options.end()}, options.size(),
                 "give at least one of --right, --edit, --archive, --channel, --doc-right, --search-right and --group");
}

}  // namespace

void AddGrantCommands(CommandParser& parser, CLI::App& parent) {
  AddCommand(
      parser, parent, "grant", "give a user or group rights, or a user membership in groups",
      "Examples:\n  oxaqry user grant Sales --right 3 --archive Finance/Invoices --channel Finance --config web.json\n"
      "  oxaqry user grant anna --group Sales --edit Finance/Invoices=NE --config web.json",
      ChangeGrants, [](CLI::App& command, GrantRequest& request) {
        request.isGrant = true;
        AddGrants(command, request);
      });
  AddCommand(parser, parent, "revoke", "revoke a user's or group's own rights; those given by groups stay",
             "Examples:\n  oxaqry user revoke anna --edit Finance/Invoices=E --config web.json\n"
             "  oxaqry user revoke anna --group Sales --config web.json",
             ChangeGrants, AddGrants);
}

}  // namespace oxaqrycln::oxaqry
