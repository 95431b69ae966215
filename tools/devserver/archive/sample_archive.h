// sample_archive.h - the development archive: opens its database and fills a new one with the sample documents.
// Its content is invented, and the same in every run.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_ARCHIVE_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_ARCHIVE_H_

#include <string>

#include "tools/devserver/archive/database.h"

namespace oxaqrycln::devserver {

inline constexpr int kSampleDocumentCount = 270;

// Opens the archive in the file, or in memory for "". An empty database gets the schema and documentCount sample
// documents. Raises ServerError when the file is not such an archive.
Database OpenArchive(const std::string& file, int documentCount = kSampleDocumentCount);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_ARCHIVE_H_
