#include "client/users.h"

#include <algorithm>

#include "client/query_access.h"
#include "client/text.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::client {
namespace {

Settings OfDatabase(const Settings& settings) {
  if (settings.database.empty()) throw BadArgument("the settings name no web user database");
  Settings own;
  own.session = settings.session;
  own.logDirectory = settings.logDirectory;
  own.database = settings.database;
  return own;
}

// A password that the database can hold: its encoding loses characters with high codes, from a position on that depends
// on the code.
std::string StorablePassword(QueryAccess& query, std::string_view utf8, const char* what) {
  std::string password = RequestText(utf8, what);
  if (query->Decode(query->Encode(password)) != password) {
    throw BadArgument(std::string(what) + " cannot be stored: use at most 47 characters, without accents");
  }
  return password;
}

std::vector<std::string> Entries(const Variant& list) { return Fields(TextOf(list)); }

// Raises DatabaseFailed for a name that would change the expression.
std::string Reference(const std::string& channel, std::string_view archive) {
  std::string reference = "$(#" + channel + ")";
  if (!archive.empty()) reference.append("\\").append(archive);
  const bool isPlain = channel.find_first_of(";()") == std::string::npos && archive.find(';') == std::string_view::npos;
  if (!isPlain) throw DatabaseFailed("\"" + reference + "\" cannot be part of a folder rights expression");
  return reference + ";";
}

}  // namespace

Users::Users(const Settings& settings) : access_(std::make_unique<QueryAccess>(OfDatabase(settings))) {}

Users::~Users() = default;
Users::Users(Users&&) noexcept = default;
Users& Users::operator=(Users&&) noexcept = default;

std::optional<std::int32_t> Users::LogOn(std::string_view name, std::string_view password) {
  QueryAccess& query = *access_;
  const auto user = FromUtf8(name);
  const auto word = FromUtf8(password);
  if (!user || !word) return std::nullopt;  // no user has them
  try {
    const std::int32_t id = query.FromDatabase(query->CheckLogon(*user, *word)).ToLong();
    return id > 0 ? std::optional(id) : std::nullopt;
  } catch (const BadArgument&) {
    return std::nullopt;  // a name that no statement may hold, so no user has it
  }
}

std::optional<std::int32_t> Users::Find(std::string_view name) {
  QueryAccess& query = *access_;
  const std::int32_t id = query.FromDatabase(query->CheckLogon(RequestText(name, "the user"))).ToLong();
  return id > 0 ? std::optional(id) : std::nullopt;
}

std::int32_t Users::Create(std::string_view name, std::string_view password, const std::optional<Account>& account) {
  QueryAccess& query = *access_;
  const std::string user = RequestText(name, "the user");
  const std::string word = StorablePassword(query, password, "the password");
  if (!account) return query.FromDatabase(query->WriteUserToDB(user, word)).ToLong();
  return query
      .FromDatabase(query->WriteUserToDB(user, word, RequestText(account->user, "the account"),
                                         StorablePassword(query, account->password, "the account's password")))
      .ToLong();
}

bool Users::ChangePassword(std::string_view name, std::string_view old, std::string_view password) {
  QueryAccess& query = *access_;
  const std::string word = StorablePassword(query, password, "the new password");
  return query.FromDatabase(query->ChangePasswd(RequestText(name, "the user"), RequestText(old, "the password"), word))
             .ToLong() > 0;
}

bool Users::MustChangePassword(std::int32_t user) {
  QueryAccess& query = *access_;
  Variant flag;
  query.FromDatabase(query->GetUserChangePasswd(user, &flag));
  return NumberOf(flag) != 0;
}

void Users::SetMustChangePassword(std::int32_t user, bool must) {
  QueryAccess& query = *access_;
  query.FromDatabase(query->SetUserChangePasswd(user, must));
}

std::optional<Account> Users::AccountOf(std::int32_t user) {
  QueryAccess& query = *access_;
  Variant name;
  Variant password;
  query.FromDatabase(query->GetUserTELOUser(user, &name, &password));
  if (TextOf(name).empty()) return std::nullopt;
  return Account{TextOf(name), TextOf(password)};
}

std::vector<std::int32_t> Users::Rights(std::int32_t user) {
  QueryAccess& query = *access_;
  Variant list;
  query.FromDatabase(query->GetUserRights(user, &list));
  std::vector<std::int32_t> rights;
  for (const std::string& right : Entries(list)) rights.push_back(static_cast<std::int32_t>(NumberOf(Variant(right))));
  return rights;
}

std::vector<std::string> Users::Groups(std::int32_t user) {
  QueryAccess& query = *access_;
  Variant list;
  query.FromDatabase(query->GetUserGroups(user, &list));
  std::vector<std::string> groups;
  const std::string text = TextOf(list);
  constexpr std::string_view kBetween = "],[";
  if (text.size() < 2) return groups;
  const std::string_view names = std::string_view(text).substr(1, text.size() - 2);
  std::size_t start = 0;
  for (std::size_t end = names.find(kBetween); end != std::string_view::npos; end = names.find(kBetween, start)) {
    groups.emplace_back(names.substr(start, end - start));
    start = end + kBetween.size();
  }
  groups.emplace_back(names.substr(start));
  return groups;
}

std::vector<std::string> Users::Channels(std::int32_t user) {
  QueryAccess& query = *access_;
  Variant list;
  query.FromDatabase(query->GetUserChannels(user, &list));
  return Entries(list);
}

std::vector<std::string> Users::Archives(std::int32_t user) {
  QueryAccess& query = *access_;
  Variant list;
  query.FromDatabase(query->GetUserArchives(user, &list));
  return Entries(list);
}

std::vector<EditRight> Users::EditRights(std::int32_t user) {
  QueryAccess& query = *access_;
  Variant list;
  query.FromDatabase(query->GetUserEditRights(user, &list));
  std::vector<EditRight> rights;
  const std::string text = TextOf(list);
  for (std::string_view line : Split(text, '\n')) {
    line = Trimmed(line, "\r");
    if (line.empty()) continue;
    EditRight right;
    // The flags stand behind the name, which may hold commas itself.
    const auto take = [&](std::string_view flag) {
      const bool has = line.ends_with(flag);
      if (has) line.remove_suffix(flag.size());
      return has;
    };
    right.canDelete = take(",D");
    right.canEdit = take(",E");
    right.canCreate = take(",N");
    right.archive = line;
    rights.push_back(std::move(right));
  }
  return rights;
}

std::vector<DocumentCondition> Users::DocumentConditions(std::int32_t user, std::string_view channel,
                                                         std::string_view archive) {
  QueryAccess& query = *access_;
  Variant list;
  query.FromDatabase(
      query->GetUserDocRights(user, RequestText(channel, "the channel"), RequestText(archive, "the archive"), &list));
  std::vector<DocumentCondition> conditions;
  for (std::vector<std::string>& fields : Records(list, 5)) {
    conditions.push_back(
        {std::move(fields[0]), std::move(fields[1]), std::move(fields[2]), std::move(fields[3]), std::move(fields[4])});
  }
  return conditions;
}

SearchRights Users::RightsToSearch(std::int32_t user, std::string_view channel, std::string_view archive) {
  QueryAccess& query = *access_;
  Variant values;
  Variant hidden;
  Variant withoutMatchcode;
  query.FromDatabase(query->GetUserSearchRights(user, RequestText(channel, "the channel"),
                                                RequestText(archive, "the archive"), &values, &hidden,
                                                &withoutMatchcode));
  SearchRights rights;
  for (std::vector<std::string>& fields : Records(values, 2)) {
    rights.fixedValues.emplace_back(std::move(fields[0]), std::move(fields[1]));
  }
  rights.hiddenFields = Entries(hidden);
  rights.fieldsWithoutMatchcode = Entries(withoutMatchcode);
  return rights;
}

std::string Users::FolderRights(std::int32_t user) {
  const std::vector<std::string> archives = Archives(user);
  std::vector<std::string> channels = Channels(user);
  std::ranges::sort(channels);  // the database gives them in any order
  std::string expression;
  for (const std::string& channel : channels) {
    if (channel.empty()) continue;
    const std::string start = "$(#" + channel + ")\\";
    std::string listed;
    for (const std::string& archive : archives) {
      if (archive.starts_with(start)) listed += Reference(channel, std::string_view(archive).substr(start.size()));
      if (!archive.empty() && !archive.starts_with("$(#")) listed += Reference(channel, archive);
    }
    expression += listed.empty() ? Reference(channel, "") : listed;
  }
  return expression;
}

}  // namespace oxaqrycln::client
