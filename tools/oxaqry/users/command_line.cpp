#include "tools/oxaqry/users/command_line.h"

#include <memory>

#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/users/commands.h"

namespace oxaqrycln::oxaqry {
namespace {

void AddName(CLI::App& command, std::string& name, const char* meaning = "the user's or group's name") {
  command.add_option("NAME", name, meaning)->required()->type_name("");
}

// NAME, and which of several users of that name.
void AddUserName(CLI::App& command, UserName& user) {
  AddName(command, user.name);
  command.add_option("--id", user.id, "which of several users of that name")->type_name("N");
}

void AddPasswordSource(CLI::App& command, PasswordSource& source) {
  command.add_flag("--password-stdin", source.isInput,
                   "read passwords from standard input, one line each, instead of asking on the terminal");
}

// A new password for a user, or the one he has.
void AddAccountCommands(CommandParser& parser, CLI::App& user) {
  const auto add = std::make_shared<AddUserRequest>();
  CLI::App* const adding = parser.AddDatabase(
      user, "add", "add a user or group",
      "Examples:\n  oxaqry user add anna --config web.json\n"
      "  oxaqry user add bert --archive-user WEB --password-stdin --config web.json < two-lines\n"
      "  oxaqry user add Sales --group --config web.json",
      [add](const Settings& settings, const Output& output) { return AddUser(settings, *add, output); });
  AddName(*adding, add->name, "the new name");
  CLI::Option* const group = adding->add_flag("--group", add->isGroup, "a group, which has no password");
  adding->add_option("--archive-user", add->archiveUser, "the user's account of the archive; its password is asked for")
      ->excludes(group)
      ->type_name("U");
  adding->add_flag("--duplicate", add->mayDuplicate, "also when the name exists");
  AddPasswordSource(*adding, add->passwords);

  const auto change = std::make_shared<PasswordRequest>();
  CLI::App* const changing = parser.AddDatabase(
      user, "passwd", "give a user a new password",
      "Examples:\n  oxaqry user passwd anna --config web.json\n"
      "  oxaqry user passwd anna --id 7 --password-stdin --config web.json < new-password",
      [change](const Settings& settings, const Output& output) { return SetUserPassword(settings, *change, output); });
  AddUserName(*changing, change->user);
  changing->add_flag("--make-user", change->mayMakeUser, "also for a group without members, which becomes a user");
  AddPasswordSource(*changing, change->passwords);

  const auto check = std::make_shared<PasswordRequest>();
  CLI::App* const checking = parser.AddDatabase(
      user, "check", "try a user's password as a log-on does; exit status 0 when it is right, else 1",
      "Example:\n  oxaqry user check anna --config web.json",
      [check](const Settings& settings, const Output& output) { return CheckUser(settings, *check, output); });
  AddName(*checking, check->user.name);
  AddPasswordSource(*checking, check->passwords);

  const auto who = std::make_shared<UserName>();
  const auto mustChange = std::make_shared<std::string>();
  CLI::App* const flag = parser.AddDatabase(user, "must-change", "say whether a user must change the password",
                                            "Example:\n  oxaqry user must-change anna on --config web.json",
                                            [who, mustChange](const Settings& settings, const Output& output) {
                                              return SetMustChange(settings, *who, *mustChange == "on", output);
                                            });
  AddUserName(*flag, *who);
  flag->add_option("STATE", *mustChange, "on or off")->required()->type_name("")->check(CLI::IsMember({"on", "off"}));
}

void AddDatabaseCommands(CommandParser& parser, CLI::App& user) {
  const auto withSample = std::make_shared<bool>(false);
  CLI::App* const init =
      parser.AddDatabase(user, "init", "make the tables in an empty database",
                         "Examples:\n  oxaqry user init --database 'Driver=SQLite3;Database=/srv/web/users.sqlite'\n"
                         "  oxaqry user init --sample --config web.json",
                         [withSample](const Settings& settings, const Output& output) {
                           return InitUsers(settings, *withSample, output);
                         });
  init->add_flag("--sample", *withSample, "also document rights, search rights and outliners for devserver's archive");
  const auto path = std::make_shared<std::string>();
  CLI::App* const import = parser.AddDatabase(
      user, "import", "add the users of a CSV file, all or none",
      "Example:\n  oxaqry user import users.csv --config web.json\n\n"
      "The file is UTF-8 with a header line that names the columns, in any order: name, password,\n"
      "and if wanted archive_user, archive_password and groups, whose names are separated by \";\".",
      [path](const Settings& settings, const Output& output) { return ImportUsers(settings, *path, output); });
  import->add_option("FILE", *path, "the file, \"-\" for standard input")->required()->type_name("");
}

void AddListCommands(CommandParser& parser, CLI::App& user) {
  const auto isOfGroups = std::make_shared<bool>(false);
  CLI::App* const list = parser.AddDatabase(
      user, "list", "list the users, or the groups with their members",
      "Examples:\n  oxaqry user list --config web.json\n  oxaqry user list --groups --json --config web.json",
      [isOfGroups](const Settings& settings, const Output& output) {
        return ListUsers(settings, *isOfGroups, output);
      });
  list->add_flag("--groups", *isOfGroups, "list the groups: who has members or has no password");

  const auto who = std::make_shared<UserName>();
  AddUserName(*parser.AddDatabase(user, "groups", "list the groups a user is a member of",
                                  "Example:\n  oxaqry user groups anna --config web.json",
                                  [who](const Settings& settings, const Output& output) {
                                    return ListGroupsOf(settings, *who, output);
                                  }),
              *who);
  AddUserName(*parser.AddDatabase(
                  user, "rights", "list what a user may do, himself and through his groups",
                  "Example:\n  oxaqry user rights anna --config web.json",
                  [who](const Settings& settings, const Output& output) { return ShowRights(settings, *who, output); }),
              *who);
}

void AddDefinitionCommands(CommandParser& parser, CLI::App& user) {
  struct ListCommand {
    const char* name;
    const char* description;
    const char* examples;
    int (*run)(const Settings&, const UserArchive&, const Output&);
  };
  for (const ListCommand& each :
       {ListCommand{"doc-rights", "list the conditions by which a user is shown the documents of an archive",
                    "Example:\n  oxaqry user doc-rights anna Finance/Invoices --config web.json", ShowDocumentRights},
        ListCommand{"search-rights", "list what restricts a user's searches in an archive",
                    "Example:\n  oxaqry user search-rights anna Finance/Invoices --config web.json",
                    ShowSearchRights}}) {
    const auto who = std::make_shared<UserName>();
    const auto where = std::make_shared<ArchiveArguments>();
    CLI::App* const command =
        parser.AddDatabase(user, each.name, each.description, each.examples,
                           [who, where, run = each.run](const Settings& settings, const Output& output) {
                             return run(settings, {*who, where->channel, where->archive}, output);
                           });
    AddUserName(*command, *who);
    AddArchiveArguments(*command, *where);
  }
}

CLI::Validator RightNumber() {
  return {[](const std::string& text) {
            const std::size_t digits = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
            const bool isNumber =
                text.size() > digits && text.find_first_not_of("0123456789", digits) == std::string::npos;
            return isNumber ? std::string() : "a right is a whole number, not \"" + text + "\"";
          },
          ""};
}

void AddGrants(CLI::App& command, Grants& grants) {
  command.add_option("--right", grants.rights, "a general right; may be repeated, as all of these")
      ->allow_extra_args(false)
      ->check(RightNumber())
      ->type_name("N");
  command.add_option("--doc-right", grants.documentRights, "a definition of document rights, by its ID")
      ->allow_extra_args(false)
      ->check(RightNumber())
      ->type_name("N");
  command.add_option("--search-right", grants.searchRights, "a definition of search rights, by its ID")
      ->allow_extra_args(false)
      ->check(RightNumber())
      ->type_name("N");
  command.add_option("--edit", grants.edits, "edit rights in an archive: the letters of N (new), E (edit), D (delete)")
      ->allow_extra_args(false)
      ->type_name("ARCHIVE=NED");
  command.add_option("--archive", grants.archives, "an archive to be seen")->allow_extra_args(false)->type_name("A");
  command.add_option("--channel", grants.channels, "a channel to be seen")->allow_extra_args(false)->type_name("C");
  command.add_option("--group", grants.groups, "membership in a group")->allow_extra_args(false)->type_name("G");
}

void AddGrantCommands(CommandParser& parser, CLI::App& user) {
  const auto who = std::make_shared<UserName>();
  const auto grants = std::make_shared<Grants>();
  CLI::App* const grant = parser.AddDatabase(
      user, "grant", "give a user or group rights, or a user membership in groups",
      "Examples:\n  oxaqry user grant Sales --right 3 --archive Invoices --channel Finance --config web.json\n"
      "  oxaqry user grant anna --group Sales --edit Invoices=NE --config web.json",
      [who, grants](const Settings& settings, const Output& output) {
        return GrantToUser(settings, *who, *grants, output);
      });
  AddUserName(*grant, *who);
  AddGrants(*grant, *grants);
  CLI::App* const revoke =
      parser.AddDatabase(user, "revoke", "take a user's or group's own rights back; those by groups stay",
                         "Examples:\n  oxaqry user revoke anna --edit Invoices=E --config web.json\n"
                         "  oxaqry user revoke anna --group Sales --config web.json",
                         [who, grants](const Settings& settings, const Output& output) {
                           return RevokeFromUser(settings, *who, *grants, output);
                         });
  AddUserName(*revoke, *who);
  AddGrants(*revoke, *grants);
}

void AddExplain(CommandParser& parser, CLI::App& user) {
  const auto request = std::make_shared<ExplainRequest>();
  CLI::App* const explain = parser.AddDatabase(
      user, "explain", "tell by whose entries a user has a right; exit status 1 when he does not have it",
      "Examples:\n  oxaqry user explain anna 3 --config web.json\n"
      "  oxaqry user explain anna --edit Invoices --config web.json",
      [request](const Settings& settings, const Output& output) { return ExplainRight(settings, *request, output); });
  AddUserName(*explain, request->user);
  CLI::Option* const right = explain->add_option("RIGHT", request->right, "the number of a general right")
                                 ->type_name("")
                                 ->check(RightNumber());
  CLI::Option* const edit =
      explain->add_option("--edit", request->edit, "the edit rights in an archive instead")->type_name("ARCHIVE");
  CLI::Option* const archive =
      explain->add_option("--archive", request->archive, "an archive to be seen instead")->type_name("A");
  CLI::Option* const channel =
      explain->add_option("--channel", request->channel, "a channel to be seen instead")->type_name("C");
  explain->parse_complete_callback([right, edit, archive, channel] {
    if (right->count() + edit->count() + archive->count() + channel->count() != 1) {
      throw CLI::ValidationError("RIGHT", "give one right: a number, --edit, --archive or --channel");
    }
  });
}

}  // namespace

void AddUserCommands(CommandParser& parser) {
  CLI::App* const user =
      parser.AddGroup("user", "keep the users, groups and rights of the web user database",
                      "Examples:\n  oxaqry user init --database 'Driver=SQLite3;Database=/srv/web/users.sqlite'\n"
                      "  oxaqry user list --config web.json");
  AddDatabaseCommands(parser, *user);
  AddAccountCommands(parser, *user);
  AddListCommands(parser, *user);
  AddDefinitionCommands(parser, *user);
  AddGrantCommands(parser, *user);
  AddExplain(parser, *user);
}

}  // namespace oxaqrycln::oxaqry
