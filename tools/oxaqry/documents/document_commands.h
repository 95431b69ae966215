// document_commands.h - the commands on single documents, their notes, and the masks of archives.
// As those of commands.h; texts that a person gave are UTF-8.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMANDS_H_

#include <string>
#include <vector>

#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/output.h"

namespace oxaqrycln::oxaqry {

struct ShowRequest {
  DocumentName document;
  std::string query;
  std::string markOn;  // around the hits; without both a terminal shows them in reverse video
  std::string markOff;
};
// A document's information, segments, texts and notes.
int Show(const Settings& settings, const ShowRequest& request, const Output& output);

// What a new document or version consists of.
struct DocumentContents {
  std::string title;
  std::vector<std::string> fields;  // TYPE:ID each
  std::string source;               // a file's path, or "-" for standard input
  std::string charset;              // of the source's bytes; "" for UTF-8, which is converted
  std::string importFile;           // the path of an import file that stays; "" for one of a moment
};
struct CreateRequest {
  std::string channel;
  std::string archive;
  DocumentContents contents;
};
int Create(const Settings& settings, const CreateRequest& request, const Output& output);
struct EditRequest {
  DocumentName document;      // with its version
  DocumentContents contents;  // without a title the document keeps its own
};
int Edit(const Settings& settings, const EditRequest& request, const Output& output);

struct DeleteRequest {
  DocumentName document;
  bool yes = false;  // without asking
};
int Delete(const Settings& settings, const DeleteRequest& request, const Output& output);

// Attaches a note; "-" is the text of standard input.
int AddNote(const Settings& settings, const DocumentName& document, const std::string& text, const Output& output);
int ListNotes(const Settings& settings, const DocumentName& document, const Output& output);
int DeleteNotes(const Settings& settings, const DeleteRequest& request, const Output& output);
int Masks(const Settings& settings, const std::string& channel, const std::string& archive, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_DOCUMENTS_DOCUMENT_COMMANDS_H_
