// hit_list_printing.h - the PrintHitlistPDF command: prints the rows of a hit list as a table.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HIT_LIST_PRINTING_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HIT_LIST_PRINTING_H_

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// Parameters: title; rows with CR LF between them, the titles of the columns first; the blob directory.
Reply PrintHitlistPdf(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HIT_LIST_PRINTING_H_
