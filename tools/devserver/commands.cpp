#include "tools/devserver/commands.h"

#include <algorithm>
#include <array>

#include "component/version.h"
#include "platform/code_page.h"
#include "tools/devserver/errors.h"
#include "tools/devserver/hit_list.h"
#include "tools/devserver/request.h"

namespace oxaqrycln::devserver {
namespace {

// Finds the archive that the first two parameters name.
std::int64_t ArchiveId(Database& database, Parameters parameters) {
  Statement query(database,
                  "SELECT archive.id FROM archive JOIN channel ON channel.id = channel_id "
                  "WHERE channel.name = ? AND archive.name = ?");
  query.Bind(1, std::string_view(parameters[0])).Bind(2, std::string_view(parameters[1]));
  if (query.Next()) return query.Number(0);
  throw ServerError("There is no archive $(#" + Printable(parameters[0]) + ")\\" + Printable(parameters[1]));
}

// Every row's first column, one a line.
std::string Lines(Statement& query) {
  std::string lines;
  while (query.Next()) lines += query.Text(0) + "\r\n";
  return lines;
}

std::string LiveCheck(Database&, Parameters) {
  return std::string("OXA development archive server ") + kVersionText + " alive\r\n";
}

std::string GetChannels(Database& database, Parameters) {
  Statement query(database, "SELECT name || ',' || description FROM channel ORDER BY id");
  return Lines(query);
}

std::string GetAllArchives(Database& database, Parameters) {
  Statement query(database,
                  "SELECT '$(#' || channel.name || ')\\' || archive.name FROM archive "
                  "JOIN channel ON channel.id = channel_id ORDER BY archive.id");
  return Lines(query);
}

std::string GetAllArchivesExt(Database& database, Parameters) {
  Statement channels(database, "SELECT name || ',' || description, id FROM channel ORDER BY id");
  std::string lines;
  while (channels.Next()) {
    lines.append("#").append(channels.Text(0)).append("\r\n");
    Statement archives(database, "SELECT name || ',' || comment FROM archive WHERE channel_id = ? ORDER BY id");
    archives.Bind(1, channels.Number(1));
    lines += Lines(archives);
  }
  return lines;
}

std::string GetQueryFormatList(Database& database, Parameters parameters) {
  Statement query(database, "SELECT name FROM query_format WHERE archive_id = ? ORDER BY position");
  query.Bind(1, ArchiveId(database, parameters));
  return Lines(query);
}

// May a document be created, edited, deleted, indexed; and the number of documents.
std::string GetArchiveProperties(Database& database, Parameters parameters) {
  Statement query(database,
                  "SELECT can_create || ',' || can_edit || ',' || can_delete || ',' || can_index || ',' || "
                  "(SELECT count(*) FROM document WHERE archive_id = archive.id) FROM archive WHERE id = ?");
  query.Bind(1, ArchiveId(database, parameters));
  return Lines(query);
}

constexpr std::array<Command, 7> kCommands = {{
    {"LiveCheck", 0, LiveCheck},
    {"GetChannels", 0, GetChannels},
    {"GetAllArchives", 0, GetAllArchives},
    {"GetAllArchivesExt", 0, GetAllArchivesExt},
    {"GetQueryFormatList", 2, GetQueryFormatList},
    {"GetArchiveProperties", 2, GetArchiveProperties},
    {"QueryArchive", 7, QueryArchive},
}};

}  // namespace

const Command* FindCommand(std::string_view name) {
  const std::string wanted = UpperCase(name);
  const auto* found = std::find_if(kCommands.begin(), kCommands.end(),
                                   [&](const Command& command) { return UpperCase(command.name) == wanted; });
  return found == kCommands.end() ? nullptr : found;
}

}  // namespace oxaqrycln::devserver
