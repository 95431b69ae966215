// document_commands.h - the commands that read a document's information, segments and texts.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_DOCUMENT_COMMANDS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_DOCUMENT_COMMANDS_H_

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// The first four parameters of each are channel, archive, document ID and version; an empty version is the newest.

Reply GetDocumentInfo(const Call& call);
// Then: thumbnail path.
Reply GetSegmentDescription(const Call& call);
// Then: query, mark on, mark off, blank.
Reply GetSegmentText(const Call& call);
// Then: query, mark on, mark off, blank, thumbnail path, include ERF.
Reply GetSegments(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_DOCUMENT_COMMANDS_H_
