// import_file.h - reads import files: the text files in which clients describe documents to be created or edited.
//
//   file     = set { set }
//   set      = [ "@CHARSET," character set ] "@DB,$(#" channel ")\" archive "@FOLDER,FT:" title { "," type ":" ID }
//              contents                       each on a line or lines of its own
//   contents = { "@FIELD," ID  content }      a field's content, on the lines behind; in the order of the folder line
//
// Contents without any "@FIELD" line are the first field's. A set begins where a line begins with "@CHARSET," or, not
// behind such a line, "@DB,$(#". Field types are those of SegmentType; the content of an image or file field is one
// line, the name of a file in the blob directory.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_IMPORT_FILE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_IMPORT_FILE_H_

#include <string>
#include <string_view>
#include <vector>

#include "tools/devserver/archive/documents.h"

namespace oxaqrycln::devserver {

struct ImportField {
  std::int64_t id;
  SegmentType type;
  std::string content;  // a text's lines end with LF; otherwise a file's name
};

struct ImportSet {
  std::vector<std::string> place;  // channel and archive
  std::string title;
  std::vector<ImportField> fields;
};

// Character sets: ANSI and WINDOWS-1252 (also without the line), ISO-8859-1, ASCII, UTF-8. Raises ServerError, with a
// text that begins "Import file: ", for what is no import file.
std::vector<ImportSet> ParseImportFile(std::string_view bytes);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_IMPORT_FILE_H_
