// import_file.h - reads import files: the text files in which clients describe documents to be created or edited.
//
//   file     = set { set }
//   set      = [ "@CHARSET," character set ] "@DB,$(#" channel ")\" archive "@FOLDER,FT:" title { "," type ":" ID }
//              contents                       each on a line or lines of its own
//   contents = { "@FIELD," ID  content }      a field's content, on the following lines; in the order of the folder
//   line
//
// Contents without any "@FIELD" line belong to the first field. A set starts at a line "@CHARSET,..." or, if there is
// none, at a line "@DB,$(#...". Field types are those of SegmentType; the content of an image or file field is one
// line, the path of a file in the blob directory.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_IMPORT_FILE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_IMPORT_FILE_H_

#include <string>
#include <string_view>
#include <vector>

#include "tools/devserver/archive/documents.h"

namespace oxaqrycln::devserver {

struct ImportSet {
  std::vector<std::string> place;  // channel and archive
  std::string title;
  std::vector<Segment> segments;  // with their field IDs, types, and texts or paths of files
};

// Character sets: ANSI and WINDOWS-1252 (also without the line), ISO-8859-1, ASCII, UTF-8. Raises ServerError, with a
// text that begins "Import file: ", for anything else.
std::vector<ImportSet> ParseImportFile(std::string_view bytes);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_IMPORT_FILE_H_
