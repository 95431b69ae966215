#include "client/archive.h"

#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"

namespace oxaqrycln::oxaqry {
namespace {

int Channels(const Settings& settings, const Output& output) {
  client::Archive archive = OpenArchive(settings, output);
  Json channels = Json::array();
  Table table({"Channel", "Description"});
  for (const client::Channel& channel : archive.Channels()) {
    channels.push_back({{"channel", channel.name}, {"description", channel.description}});
    table.Add(Cells({channel.name, channel.description}));
  }
  return PrintResult(output, {{"channels", std::move(channels)}}, table.Text(TerminalColumns(output)));
}

int Archives(const Settings& settings, const Output& output) {
  client::Archive archive = OpenArchive(settings, output);
  Json archives = Json::array();
  Table table({"Archive", "Comment"});
  for (const client::Channel& channel : archive.Archives()) {
    for (const client::ArchiveEntry& entry : channel.archives) {
      const std::string name = ArchiveText(channel.name, entry.name);
      archives.push_back(
          {{"name", name}, {"channel", channel.name}, {"archive", entry.name}, {"comment", entry.comment}});
      table.Add(Cells({name, entry.comment}));
    }
  }
  return PrintResult(output, {{"archives", std::move(archives)}}, table.Text(TerminalColumns(output)));
}

int Formats(const Settings& settings, const ArchiveArguments& names, const Output& output) {
  client::Archive archive = OpenArchive(settings, output);
  Json formats = Json::array();
  Table table({"Query format"});
  for (const std::string& format : archive.Formats(names.channel, names.archive)) {
    formats.push_back(format);
    table.Add(Cells({format}));
  }
  return PrintResult(output, {{"formats", std::move(formats)}}, table.Text(TerminalColumns(output)));
}

const char* YesOrNo(bool yes) { return yes ? "yes" : "no"; }

int Properties(const Settings& settings, const ArchiveArguments& names, const Output& output) {
  const client::ArchiveProperties may = OpenArchive(settings, output).Properties(names.channel, names.archive);
  Table table({"Property", "Value"});
  table.Add({"create", YesOrNo(may.canCreate)});
  table.Add({"edit", YesOrNo(may.canEdit)});
  table.Add({"delete", YesOrNo(may.canDelete)});
  table.Add({"index", YesOrNo(may.canIndex)});
  table.Add({"fifth", Printable(may.fifth)});
  return PrintResult(output,
                     {{"name", ArchiveText(names.channel, names.archive)},
                      {"create", may.canCreate},
                      {"edit", may.canEdit},
                      {"delete", may.canDelete},
                      {"index", may.canIndex},
                      {"fifth", may.fifth}},
                     table.Text(TerminalColumns(output)));
}

int Masks(const Settings& settings, const ArchiveArguments& names, const Output& output) {
  client::Archive archive = OpenArchive(settings, output);
  Table table({"Mask", "Tab", "Width", "Align", "Field", "Mandatory", "Initial text", "List only", "List"});
  Json masks = Json::array();
  for (const client::Mask& mask : archive.Masks(names.channel, names.archive)) {
    Json fields = Json::array();
    for (const client::MaskField& field : mask.fields) {
      fields.push_back({{"tabIndex", field.tabIndex},
                        {"width", field.width},
                        {"align", field.align},
                        {"name", field.name},
                        {"mandatory", field.isMandatory},
                        {"initialText", field.initialText},
                        {"listOnly", field.isListOnly},
                        {"list", field.list}});
      table.Add(Cells({mask.name, std::to_string(field.tabIndex), std::to_string(field.width), field.align, field.name,
                       YesOrNo(field.isMandatory), field.initialText, YesOrNo(field.isListOnly), field.list}));
    }
    if (mask.fields.empty()) table.Add(Cells({mask.name}));
    masks.push_back({{"mask", mask.name}, {"fields", std::move(fields)}});
  }
  return PrintResult(output, {{"masks", std::move(masks)}}, table.Text(TerminalColumns(output)));
}

}  // namespace

void AddArchiveCommands(CommandParser& parser) {
  CLI::App& app = parser.app();
  parser.AddQuery(app, "channels", "list the channels", "Example:\n  oxaqry channels --hosts localhost,2001 --json",
                  Channels);
  parser.AddQuery(app, "archives", "list the archives of all channels with their comments",
                  "Example:\n  oxaqry archives --hosts localhost,2001", Archives);
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
