// sample_documents.h - the documents of the sample archive, with their versions, page images, stored files and notes.
// Invented, and the same in every run.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DOCUMENTS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DOCUMENTS_H_

#include "tools/devserver/archive/database.h"

namespace oxaqrycln::devserver {

// Formats up to three numbers as printf does, into at most 63 characters.
std::string Format(const char* pattern, std::size_t first, std::size_t second = 0, std::size_t third = 0);

// Adds documents with IDs from 1001 to the nine archives in turn, which must exist.
void AddSampleDocuments(Database& database, int count);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DOCUMENTS_H_
