// notes_and_masks.h - the commands on the notes of documents and on the masks of archives.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_NOTES_AND_MASKS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_NOTES_AND_MASKS_H_

#include "tools/devserver/commands/commands.h"

namespace oxaqrycln::devserver {

// The first four parameters of each are channel, archive, document ID and version. Notes belong to all versions.
Reply GetNotes(const Call& call);
// Then: the note of at most 8000 characters, and the text that represents a line break in it.
Reply WriteNote(const Call& call);
Reply DeleteNotes(const Call& call);

// Parameters: channel, archive. A line "@mask" for each mask and a line of eight fields for each of its fields.
Reply GetMasks(const Call& call);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_COMMANDS_NOTES_AND_MASKS_H_
