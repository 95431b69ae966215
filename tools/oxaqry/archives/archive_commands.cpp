#include "tools/oxaqry/cli/command_families.h"

#include <array>

#include "tools/oxaqry/cli/archive_query.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

int Channels(const Settings& settings, const Output& output) {
  ArchiveQuery archive(settings, output);
  Json channels = Json::array();
  Table table({"Channel", "Description"});
  archive.ForEach(archive.Count(archive->TELOGetChannelsInit(archive.status())), "channel", [&](std::int32_t) {
    Variant description;
    const std::string channel = archive->TELOGetChannelsNext(&description);
    channels.push_back({{"channel", ToUtf8(channel)}, {"description", ToUtf8(description.ToText())}});
    table.Add({Printable(channel), Printable(description.ToText())});
  });
  return PrintResult(output, {{"channels", std::move(channels)}}, table.Text(TerminalColumns(output)));
}

// A list of one text a line.
template <typename Next>
void PrintList(ArchiveQuery& archive, std::int32_t count, const char* name, const char* key, const char* title,
               const Output& output, Next&& next) {
  Json list = Json::array();
  Table table({title});
  archive.ForEach(count, key, [&](std::int32_t) {
    const std::string text = next();
    list.push_back({{key, ToUtf8(text)}});
    table.Add({Printable(text)});
  });
  PrintResult(output, {{name, std::move(list)}}, table.Text(TerminalColumns(output)));
}

int ArchivesByChannel(ArchiveQuery& archive, const Output& output) {
  Table table({"Channel", "Archive", "Comment"});
  Json channels = Json::array();
  archive.ForEach(archive.Count(archive->TELOGetAllArchivesExtInit(archive.status())), "channel", [&](std::int32_t) {
    Variant channel;
    Variant description;
    const std::int32_t archiveCount = archive->TELOGetAllArchivesExtNext(&channel, &description).ToLong();
    Json archives = Json::array();
    archive.ForEach(archiveCount, "archive", [&](std::int32_t) {
      Variant comment;
      const std::string name = archive->TELOGetAllArchivesExtNextArchive(&comment);
      archives.push_back({{"archive", ToUtf8(name)}, {"comment", ToUtf8(comment.ToText())}});
      table.Add(Cells({channel.ToText(), name, comment.ToText()}));
    });
    if (archiveCount <= 0) table.Add({Printable(channel.ToText())});
    channels.push_back({{"channel", ToUtf8(channel.ToText())},
                        {"description", ToUtf8(description.ToText())},
                        {"archives", std::move(archives)}});
  });
  return PrintResult(output, {{"channels", std::move(channels)}}, table.Text(TerminalColumns(output)));
}

int Archives(const Settings& settings, const bool& isByChannel, const Output& output) {
  ArchiveQuery archive(settings, output);
  if (isByChannel) return ArchivesByChannel(archive, output);
  const std::int32_t count = archive.Count(archive->TELOGetAllArchivesInit(archive.status()));
  PrintList(archive, count, "archives", "archive", "Archive", output,
            [&] { return archive->TELOGetAllArchivesNext(); });
  return 0;
}

int Formats(const Settings& settings, const ArchiveArguments& names, const Output& output) {
  ArchiveQuery archive(settings, output);
  const std::int32_t count = archive.Count(archive->TELOGetQueryFormatListInit(
      FieldFromUtf8(names.channel), FieldFromUtf8(names.archive), archive.status()));
  PrintList(archive, count, "formats", "format", "Query format", output,
            [&] { return archive->TELOGetQueryFormatListNext(); });
  return 0;
}

int Properties(const Settings& settings, const ArchiveArguments& names, const Output& output) {
  ArchiveQuery archive(settings, output);
  constexpr std::array kNames{"create", "edit", "delete", "index", "fifth"};
  std::array<Variant, kNames.size()> values;
  values[4] = archive->TELOGetArchiveProperties(FieldFromUtf8(names.channel), FieldFromUtf8(names.archive),
                                                values.data(), &values[1], &values[2], &values[3], archive.status());
  archive.Count(values[4]);
  Json document = Json::object();
  Table table({"Property", "Value"});
  for (std::size_t i = 0; i < values.size(); ++i) {
    document[kNames[i]] = ToUtf8(values[i].ToText());
    table.Add({kNames[i], Printable(values[i].ToText())});
  }
  return PrintResult(output, document, table.Text(TerminalColumns(output)));
}

int Masks(const Settings& settings, const ArchiveArguments& names, const Output& output) {
  constexpr std::array kKeys{"tabIndex", "width", "align", "name", "mandatory", "initialText", "listOnly", "list"};
  ArchiveQuery archive(settings, output);
  Table table({"Mask", "Tab", "Width", "Align", "Field", "Mandatory", "Initial text", "List only", "List"});
  Json masks = Json::array();
  const std::int32_t count = archive.Count(
      archive->TELOGetMasksInit(FieldFromUtf8(names.channel), FieldFromUtf8(names.archive), archive.status()));
  archive.ForEach(count, "mask", [&](std::int32_t) {
    Variant name;
    const std::int32_t fieldCount = archive->TELOGetMasksNext(&name).ToLong();
    Json fields = Json::array();
    archive.ForEach(fieldCount, "mask field", [&](std::int32_t) {
      std::array<Variant, kKeys.size()> field;
      archive->TELOGetMasksNextField(field.data(), &field[1], &field[2], &field[3], &field[4], &field[5], &field[6],
                                     &field[7]);
      Json object = Json::object();
      std::vector<std::string> cells{Printable(name.ToText())};
      for (std::size_t i = 0; i < field.size(); ++i) {
        object[kKeys[i]] = ToUtf8(field[i].ToText());
        cells.push_back(Printable(field[i].ToText()));
      }
      fields.push_back(std::move(object));
      table.Add(std::move(cells));
    });
    if (fieldCount <= 0) table.Add({Printable(name.ToText())});
    masks.push_back({{"mask", ToUtf8(name.ToText())}, {"fields", std::move(fields)}});
  });
  return PrintResult(output, {{"masks", std::move(masks)}}, table.Text(TerminalColumns(output)));
}

}  // namespace

void AddArchiveCommands(CommandParser& parser) {
  CLI::App& app = parser.app();
  parser.AddQuery(app, "channels", "list the channels", "Example:\n  oxaqry channels --hosts localhost,2001 --json",
                  Channels);
  const auto [archives, isByChannel] = parser.AddQuery(
      app, "archives", "list the archives",
      "Examples:\n  oxaqry archives --hosts localhost,2001\n  oxaqry archives --ext --hosts localhost,2001", Archives);
  archives->add_flag("--ext", *isByChannel, "every channel with its archives and their comments");
  struct OfArchive {
    const char* name;
    const char* description;
    const char* examples;
    CommandParser::CommandWith<ArchiveArguments> run;
  };
  for (const OfArchive& each :
       {OfArchive{"formats", "list the query formats of an archive",
                  "Example:\n  oxaqry formats Mail/Inbox --hosts localhost,2001", Formats},
        OfArchive{"properties", "show what may be done in an archive",
                  "Example:\n  oxaqry properties Mail/Inbox --hosts localhost,2001", Properties},
        OfArchive{"masks", "list the masks of an archive with their fields",
                  "Example:\n  oxaqry masks Finance/Invoices --hosts localhost,2001", Masks}}) {
    const auto [command, names] = parser.AddQuery(app, each.name, each.description, each.examples, each.run);
    AddArchiveArguments(*command, *names);
  }
}

}  // namespace oxaqrycln::oxaqry
