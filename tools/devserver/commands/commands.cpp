#include "tools/devserver/commands/commands.h"

#include <algorithm>
#include <array>

#include "component/version.h"
#include "tools/devserver/archive/documents.h"
#include "tools/devserver/commands/change_commands.h"
#include "tools/devserver/commands/content_commands.h"
#include "tools/devserver/commands/document_commands.h"
#include "tools/devserver/commands/hit_list.h"
#include "tools/devserver/commands/hit_list_printing.h"
#include "tools/devserver/commands/transport_orders.h"
#include "values/code_page.h"

namespace oxaqrycln::devserver {
namespace {

// Every row's first column, one a line.
std::string Lines(Statement& query) {
  std::string lines;
  while (query.Next()) lines += query.Text(0) + "\r\n";
  return lines;
}

Reply LiveCheck(const Call&) { return std::string("OXA development archive server ") + kVersionText + " alive\r\n"; }

Reply GetChannels(const Call& call) {
  Statement query(call.database, "SELECT name || ',' || description FROM channel ORDER BY id");
  return Lines(query);
}

Reply GetAllArchives(const Call& call) {
  Statement query(call.database,
                  "SELECT '$(#' || channel.name || ')\\' || archive.name FROM archive "
                  "JOIN channel ON channel.id = channel_id ORDER BY archive.id");
  return Lines(query);
}

Reply GetAllArchivesExt(const Call& call) {
  Statement channels(call.database, "SELECT name || ',' || description, id FROM channel ORDER BY id");
  std::string lines;
  while (channels.Next()) {
    lines.append("#").append(channels.Text(0)).append("\r\n");
    Statement archives(call.database, "SELECT name || ',' || comment FROM archive WHERE channel_id = ? ORDER BY id");
    archives.Bind(1, channels.Number(1));
    lines += Lines(archives);
  }
  return lines;
}

Reply GetQueryFormatList(const Call& call) {
  Statement query(call.database, "SELECT name FROM query_format WHERE archive_id = ? ORDER BY position");
  query.Bind(1, FindArchive(call.database, call.parameters[0], call.parameters[1]).id);
  return Lines(query);
}

// May a document be created, edited, deleted, indexed; and the number of documents.
Reply GetArchiveProperties(const Call& call) {
  Statement query(call.database,
                  "SELECT can_create || ',' || can_edit || ',' || can_delete || ',' || can_index || ',' || "
                  "(SELECT count(*) FROM document WHERE archive_id = archive.id) FROM archive WHERE id = ?");
  query.Bind(1, FindArchive(call.database, call.parameters[0], call.parameters[1]).id);
  return Lines(query);
}

constexpr std::array<Command, 28> kCommands = {{
    {"LiveCheck", {0}, false, LiveCheck},
    {"GetChannels", {0}, false, GetChannels},
    {"GetAllArchives", {0}, false, GetAllArchives},
    {"GetAllArchivesExt", {0}, false, GetAllArchivesExt},
    {"GetQueryFormatList", {2}, false, GetQueryFormatList},
    {"GetArchiveProperties", {2}, false, GetArchiveProperties},
    {"QueryArchive", {7}, false, QueryArchive},
    {"GetDocumentInfo", {4}, false, GetDocumentInfo},
    {"GetSegmentDescription", {5}, false, GetSegmentDescription},
    {"GetSegmentText", {8}, false, GetSegmentText},
    {"GetSegments", {10}, false, GetSegments},
    {"GetSegmentData", {6}, false, GetSegmentData},
    {"GetSegmentFirstBLOB", {6}, false, GetSegmentFirstBlob},
    {"GetSegmentPrintfile2", {6}, false, GetSegmentPrintfile2},
    {"GetSegmentMultiTIF", {6}, false, GetSegmentMultiTif},
    {"TransferBLOB", {1}, true, TransferBlob},
    {"UploadFile", {3, true}, false, UploadFile},
    {"CreateDocument", {1}, false, CreateDocument},
    {"EditDocument", {2}, false, EditDocument},
    {"DeleteDocument", {4}, false, DeleteDocument},
    {"GetNotes", {4}, false, GetNotes},
    {"WriteNote", {6}, false, WriteNote},
    {"DeleteNotes", {4}, false, DeleteNotes},
    {"GetMasks", {2}, false, GetMasks},
    {"QueryFahrauftraege", {2}, false, QueryFahrauftraege},
    {"GetFahrauftraegeMultiTIFF", {2}, false, GetFahrauftraegeMultiTiff},
    {"UpdateFahrauftraegeStatus", {2}, false, UpdateFahrauftraegeStatus},
    {"PrintHitlistPDF", {3, false, true}, false, PrintHitlistPdf},
}};

}  // namespace

const Command* FindCommand(std::string_view name) {
  const std::string wanted = UpperCase(name);
  const auto* found = std::find_if(kCommands.begin(), kCommands.end(),
                                   [&](const Command& command) { return UpperCase(command.name) == wanted; });
  return found == kCommands.end() ? nullptr : found;
}

}  // namespace oxaqrycln::devserver
