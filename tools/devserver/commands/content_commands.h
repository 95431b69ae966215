// content_commands.h - the commands that transfer a document's content to a client, and a client's file to the server.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_CONTENT_COMMANDS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_CONTENT_COMMANDS_H_

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// The first four parameters of these are channel, archive, document ID and version; the last one is the blob directory.
// The answer is the length and the name of a new file there.

// Fifth: the segment's position, from 1.
Reply GetSegmentData(const Call& call);
// Fifth: the extension of the stored file, with or without its dot; "" takes the first file.
Reply GetSegmentFirstBlob(const Call& call);
// Fifth: the field ID; "" prints the whole document.
Reply GetSegmentPrintfile2(const Call& call);
// Fifth: page numbers with commas between them; "" takes all pages.
Reply GetSegmentMultiTif(const Call& call);

// Stores the bytes in a new file of the blob directory, under the name or a similar one; the answer is its length and
// name.
Reply StoreContent(const Call& call, const std::string& name, std::string_view bytes);

// Parameter: the path of a file in the blob directory, whose bytes are the reply.
Reply TransferBlob(const Call& call);
// Parameters: the blob directory, name and byte count of the file that follows the request.
Reply UploadFile(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_CONTENT_COMMANDS_H_
