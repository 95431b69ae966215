// handlers.h - the functions that carry out the commands of commands.cpp's table; each source defines a group of them.
// Each comment names the parameters. "A document" is four of them: channel, archive, document ID and version, where an
// empty version is the newest.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HANDLERS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HANDLERS_H_

#include <string>
#include <string_view>

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// hit_list.cpp

// Query, max lines, query max, layout field ID, query format, folder rights, layout ID. Max lines limits the rows of
// the answer, query max the hits that a query may have; 0 or "" is no limit. Layout ID "" is layout 1; a layout field
// ID appends that field's column to those of the layout. A query format, "" for none, restricts the search to its
// fields and to the archives that offer it.
Reply QueryArchive(const Call& call);

// document_commands.cpp

// A document.
Reply GetDocumentInfo(const Call& call);
// A document, thumbnail path.
Reply GetSegmentDescription(const Call& call);
// A document, query, mark on, mark off, blank.
Reply GetSegmentText(const Call& call);
// A document, query, mark on, mark off, blank, thumbnail path, include ERF.
Reply GetSegments(const Call& call);

// content_commands.cpp: content goes into the blob directory; the answer is the length and the name of a new file
// there.

// A document, the segment's position from 1, the blob directory.
Reply GetSegmentData(const Call& call);
// A document, the extension of the stored file with or without its dot ("" takes the first file), the blob directory.
Reply GetSegmentFirstBlob(const Call& call);
// A document, the field ID ("" prints the whole document), the blob directory.
Reply GetSegmentPrintfile2(const Call& call);
// A document, page numbers with commas between them ("" takes all pages), the blob directory.
Reply GetSegmentMultiTif(const Call& call);
// The path of a file in the blob directory, whose bytes are the reply.
Reply TransferBlob(const Call& call);
// The blob directory, name and byte count of the file that follows the request.
Reply UploadFile(const Call& call);

// For handlers that make a file: stores the bytes in a new file of the blob directory, under the name or a similar one.
Reply StoreContent(const Call& call, const std::string& name, std::string_view bytes);

// change_commands.cpp: each is one transaction of the database.

// An import file in the blob directory. The answer is a line "document ID,version" for each of its sets.
Reply CreateDocument(const Call& call);
// An import file of one set, "document ID,version". The version must be the newest. In the new version, the imported
// segments replace those with the same field IDs; the others stay.
Reply EditDocument(const Call& call);
// A document; an empty version deletes all versions. The document is deleted with its last version.
Reply DeleteDocument(const Call& call);

// notes_and_masks.cpp: notes belong to all versions of a document.

// A document.
Reply GetNotes(const Call& call);
// A document, the note of at most 8000 characters, the text that represents a line break in it.
Reply WriteNote(const Call& call);
// A document.
Reply DeleteNotes(const Call& call);
// Channel, archive. A line "@mask" for each mask and a line of eight fields for each of its fields.
Reply GetMasks(const Call& call);

// transport_orders.cpp: the page images of an order are those of its document.

// Query, max lines; 0 or "" is no limit. A record for each order, by its ID: ID, status, document ID, version,
// customer, origin, destination, date, weight.
Reply QueryFahrauftraege(const Call& call);
// Order IDs with commas between them, the blob directory. One TIFF of all their pages, in this order.
Reply GetFahrauftraegeMultiTiff(const Call& call);
// Order ID, status, one of kOrderStatuses.
Reply UpdateFahrauftraegeStatus(const Call& call);

// hit_list_printing.cpp

// Title; rows with CR LF between them, the titles of the columns first; the blob directory.
Reply PrintHitlistPdf(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_HANDLERS_H_
