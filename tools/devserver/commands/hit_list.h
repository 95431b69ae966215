// hit_list.h - the QueryArchive command: runs a query and formats its hits as rows.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HIT_LIST_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HIT_LIST_H_

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// Parameters: query, max lines, query max, layout field ID, query format, folder rights, layout ID. Max lines limits
// the rows of the answer, query max the hits that a query may have; 0 or "" is no limit. Layout ID "" is layout 1; a
// layout field ID appends that field's column to those of the layout. A query format, "" for none, restricts the
// search to its fields and to the archives that offer it.
Reply QueryArchive(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HIT_LIST_H_
