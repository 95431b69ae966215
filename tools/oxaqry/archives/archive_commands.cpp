#include "tools/oxaqry/archives/archive_commands.h"

#include <array>
#include <ostream>
#include <vector>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

void PrintJson(const Output& output, const Json& document) { output.out << document.dump(2) << '\n'; }

// The records as a table, or as a document {"name":[{"key":...}, ...]} with the keys in place of the titles.
void PrintRecords(const Output& output, const char* name, const std::vector<const char*>& keys,
                  const std::vector<std::string>& titles, const std::vector<std::vector<std::string>>& records) {
  if (!output.json) {
    Table table(titles);
    for (const auto& record : records) {
      std::vector<std::string> cells;
      for (const std::string& value : record) cells.push_back(Printable(value));
      table.Add(std::move(cells));
    }
    table.Print(output.out);
    return;
  }
  Json list = Json::array();
  for (const auto& record : records) {
    Json object = Json::object();
    for (std::size_t i = 0; i < keys.size(); ++i) object[keys[i]] = ToUtf8(record[i]);
    list.push_back(std::move(object));
  }
  PrintJson(output, {{name, std::move(list)}});
}

}  // namespace

int Channels(const Settings& settings, const Output& output) {
  const auto query = settings.Connect();
  Variant status;
  const std::int32_t count = Count(query->TELOGetChannelsInit(&status), status);
  std::vector<std::vector<std::string>> records;
  for (std::int32_t i = 0; i < count; ++i) {
    Variant description;
    std::string channel = query->TELOGetChannelsNext(&description);
    records.push_back({std::move(channel), description.ToText()});
  }
  PrintRecords(output, "channels", {"channel", "description"}, {"Channel", "Description"}, records);
  return 0;
}

int AllArchives(const Settings& settings, const Output& output) {
  const auto query = settings.Connect();
  Variant status;
  const std::int32_t count = Count(query->TELOGetAllArchivesInit(&status), status);
  std::vector<std::vector<std::string>> records;
  for (std::int32_t i = 0; i < count; ++i) records.push_back({query->TELOGetAllArchivesNext()});
  PrintRecords(output, "archives", {"archive"}, {"Archive"}, records);
  return 0;
}

int ArchivesByChannel(const Settings& settings, const Output& output) {
  const auto query = settings.Connect();
  Variant status;
  const std::int32_t channelCount = Count(query->TELOGetAllArchivesExtInit(&status), status);
  Table table({"Channel", "Archive", "Comment"});
  Json list = Json::array();
  for (std::int32_t i = 0; i < channelCount; ++i) {
    Variant channel;
    Variant description;
    const std::int32_t archiveCount = query->TELOGetAllArchivesExtNext(&channel, &description).ToLong();
    if (archiveCount < 0) Fail("");
    Json archives = Json::array();
    for (std::int32_t k = 0; k < archiveCount; ++k) {
      Variant comment;
      const std::string archive = query->TELOGetAllArchivesExtNextArchive(&comment);
      if (output.json) {
        archives.push_back({{"archive", ToUtf8(archive)}, {"comment", ToUtf8(comment.ToText())}});
      } else {
        table.Add({Printable(channel.ToText()), Printable(archive), Printable(comment.ToText())});
      }
    }
    if (archiveCount == 0) table.Add({Printable(channel.ToText())});
    list.push_back({{"channel", ToUtf8(channel.ToText())},
                    {"description", ToUtf8(description.ToText())},
                    {"archives", std::move(archives)}});
  }
  if (output.json) {
    PrintJson(output, {{"channels", std::move(list)}});
  } else {
    table.Print(output.out);
  }
  return 0;
}

int Formats(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output) {
  const auto query = settings.Connect();
  Variant status;
  const Variant result = query->TELOGetQueryFormatListInit(FieldFromUtf8(channel), FieldFromUtf8(archive), &status);
  const std::int32_t count = Count(result, status);
  std::vector<std::vector<std::string>> records;
  for (std::int32_t i = 0; i < count; ++i) records.push_back({query->TELOGetQueryFormatListNext()});
  PrintRecords(output, "formats", {"format"}, {"Query format"}, records);
  return 0;
}

int Properties(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output) {
  const auto query = settings.Connect();
  constexpr std::array kNames{"create", "edit", "delete", "index", "fifth"};
  std::array<Variant, 5> values;
  Variant status;
  values[4] = query->TELOGetArchiveProperties(FieldFromUtf8(channel), FieldFromUtf8(archive), values.data(), &values[1],
                                              &values[2], &values[3], &status);
  if (values[4].type() != Variant::Type::String) Fail(status.ToText());
  Json document = Json::object();
  Table table({"Property", "Value"});
  for (std::size_t i = 0; i < values.size(); ++i) {
    document[kNames[i]] = ToUtf8(values[i].ToText());
    table.Add({kNames[i], Printable(values[i].ToText())});
  }
  if (output.json) {
    PrintJson(output, document);
  } else {
    table.Print(output.out);
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
