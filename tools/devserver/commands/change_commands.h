// change_commands.h - the commands that create, edit and delete documents. Each is one transaction of the database.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_CHANGE_COMMANDS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_CHANGE_COMMANDS_H_

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// Parameter: an import file in the blob directory. The answer is a line "document ID,version" for each of its sets.
Reply CreateDocument(const Call& call);
// Parameters: an import file of one set, "document ID,version". The version must be the newest. In the new
// version, the imported segments replace those with the same field IDs; the others stay.
Reply EditDocument(const Call& call);
// Parameters: channel, archive, document ID, version; "" deletes all versions, and the document with its last one.
Reply DeleteDocument(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_CHANGE_COMMANDS_H_
