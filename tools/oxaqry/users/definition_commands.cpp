// The commands "user doc-rights" and "user search-rights".
#include <ostream>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/users/commands.h"
#include "tools/oxaqry/users/lists.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

struct Archive {
  Archive(const UserDatabase& database, const UserArchive& request)
      : channel(database.Entry(request.channel, "the channel")),
        archive(database.Entry(request.archive, "the archive")) {}
  std::string channel;
  std::string archive;
};

Json JsonHead(const WebUser& user, const UserArchive& request) {
  return {{"userId", user.id}, {"name", ToUtf8(user.name)}, {"channel", request.channel}, {"archive", request.archive}};
}

Json JsonIds(const std::vector<std::string>& ids) {
  Json list = Json::array();
  for (const std::string& id : ids) list.push_back(JsonId(id));
  return list;
}

}  // namespace

int ShowDocumentRights(const Settings& settings, const UserArchive& request, const Output& output) {
  UserDatabase database(settings);
  const Archive archive(database, request);
  const WebUser user = database.User(request.user);
  Variant lines;
  if (database.query().GetUserDocRights(user.id, archive.channel, archive.archive, &lines).IsEmpty()) {
    database.Fail("the document rights cannot be read");
  }
  Json conditions = Json::array();
  Table table({"Definition", "Field", "Operator", "Value", "Type"});
  for (const auto& line : ListLines(lines.ToText(), 5)) {
    std::vector<std::string> cells;
    for (const std::string& field : line) cells.push_back(Printable(field));
    table.Add(std::move(cells));
    conditions.push_back({{"definition", JsonId(line[0])},
                          {"field", JsonId(line[1])},
                          {"operator", ToUtf8(line[2])},
                          {"value", ToUtf8(line[3])},
                          {"type", ToUtf8(line[4])}});
  }
  if (output.json) {
    Json json = JsonHead(user, request);
    json["conditions"] = std::move(conditions);
    output.out << json.dump(2) << '\n';
  } else {
    table.Print(output.out);
  }
  return 0;
}

int ShowSearchRights(const Settings& settings, const UserArchive& request, const Output& output) {
  UserDatabase database(settings);
  const Archive archive(database, request);
  const WebUser user = database.User(request.user);
  Variant fixedValues;
  Variant hidden;
  Variant noMatchcode;
  if (database.query()
          .GetUserSearchRights(user.id, archive.channel, archive.archive, &fixedValues, &hidden, &noMatchcode)
          .IsEmpty()) {
    database.Fail("the search rights cannot be read");
  }
  const auto values = ListLines(fixedValues.ToText(), 2);
  const auto hiddenFields = ListEntries(hidden.ToText());
  const auto noMatchcodeFields = ListEntries(noMatchcode.ToText());
  if (output.json) {
    Json json = JsonHead(user, request);
    json["fixedValues"] = Json::array();
    for (const auto& line : values) {
      json["fixedValues"].push_back({{"field", JsonId(line[0])}, {"value", ToUtf8(line[1])}});
    }
    json["hiddenFields"] = JsonIds(hiddenFields);
    json["noMatchcodeFields"] = JsonIds(noMatchcodeFields);
    output.out << json.dump(2) << '\n';
    return 0;
  }
  Table table({"Kind", "Field", "Value"});
  for (const auto& line : values) table.Add({"fixed value", Printable(line[0]), Printable(line[1])});
  for (const std::string& field : hiddenFields) table.Add({"hidden", Printable(field)});
  for (const std::string& field : noMatchcodeFields) table.Add({"no matchcode", Printable(field)});
  table.Print(output.out);
  return 0;
}

}  // namespace oxaqrycln::oxaqry
