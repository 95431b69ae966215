#include "tools/devserver/commands/commands.h"

#include <algorithm>
#include <array>

#include "component/version.h"
#include "tools/devserver/archive/documents.h"
#include "tools/devserver/commands/handlers.h"
#include "values/code_page.h"

namespace oxaqrycln::devserver {
namespace {

// The first column of every row, one per line.
std::string Lines(Statement& query) {
  std::string lines;
  while (query.executeStep()) lines += query.Text(0) + "\r\n";
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
  while (channels.executeStep()) {
    Statement archives(call.database, "SELECT name || ',' || comment FROM archive WHERE channel_id = ? ORDER BY id",
                       channels.Number(1));
    lines += "#" + channels.Text(0) + "\r\n" + Lines(archives);
  }
  return lines;
}

Reply GetQueryFormatList(const Call& call) {
  Statement query(call.database, "SELECT name FROM query_format WHERE archive_id = ? ORDER BY position",
                  FindArchive(call.database, call.parameters).id);
  return Lines(query);
}

// Whether documents may be created, edited, deleted and indexed, and the number of documents.
Reply GetArchiveProperties(const Call& call) {
  Statement query(call.database,
                  "SELECT can_create || ',' || can_edit || ',' || can_delete || ',' || can_index || ',' || "
                  "(SELECT count(*) FROM document WHERE archive_id = archive.id) FROM archive WHERE id = ?",
                  FindArchive(call.database, call.parameters).id);
  return Lines(query);
}

constexpr std::array<Command, 28> kCommands = {{
    {"LiveCheck", {0}, LiveCheck},
    {"GetChannels", {0}, GetChannels},
    {"GetAllArchives", {0}, GetAllArchives},
    {"GetAllArchivesExt", {0}, GetAllArchivesExt},
    {"GetQueryFormatList", {2}, GetQueryFormatList},
    {"GetArchiveProperties", {2}, GetArchiveProperties},
    {"QueryArchive", {7}, QueryArchive},
    {"GetDocumentInfo", {4}, GetDocumentInfo},
    {"GetSegmentDescription", {5}, GetSegmentDescription},
    {"GetSegmentText", {8}, GetSegmentText},
    {"GetSegments", {10}, GetSegments},
    {"GetSegmentData", {6}, GetSegmentData},
    {"GetSegmentFirstBLOB", {6}, GetSegmentFirstBlob},
    {"GetSegmentPrintfile2", {6}, GetSegmentPrintfile2},
    {"GetSegmentMultiTIF", {6}, GetSegmentMultiTif},
    {"TransferBLOB", {1, Form::kRawAnswer}, TransferBlob},
    {"UploadFile", {3, Form::kBody}, UploadFile},
    {"CreateDocument", {1}, CreateDocument},
    {"EditDocument", {2}, EditDocument},
    {"DeleteDocument", {4}, DeleteDocument},
    {"GetNotes", {4}, GetNotes},
    {"WriteNote", {6}, WriteNote},
    {"DeleteNotes", {4}, DeleteNotes},
    {"GetMasks", {2}, GetMasks},
    {"QueryFahrauftraege", {2}, QueryFahrauftraege},
    {"GetFahrauftraegeMultiTIFF", {2}, GetFahrauftraegeMultiTiff},
    {"UpdateFahrauftraegeStatus", {2}, UpdateFahrauftraegeStatus},
    {"PrintHitlistPDF", {3, Form::kRows}, PrintHitlistPdf},
}};

}  // namespace

const Command* FindCommand(std::string_view name) {
  const std::string wanted = UpperCase(name);
  const auto* const found =
      std::ranges::find_if(kCommands, [&](const Command& command) { return UpperCase(command.name) == wanted; });
  return found == kCommands.end() ? nullptr : found;
}

}  // namespace oxaqrycln::devserver
