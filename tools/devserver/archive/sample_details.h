// sample_details.h - what the sample documents consist of: versions, texts, page images, stored files and notes.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DETAILS_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DETAILS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "tools/devserver/archive/database.h"

namespace oxaqrycln::devserver {

// A sample document as its row describes it; all text is UTF-8.
struct SampleDocument {
  std::size_t index;  // from 0
  std::int64_t id;
  std::int64_t archiveId;
  std::int64_t version;
  std::size_t day, month, year;
  std::string title, author, customer, thing, amount;
  std::array<std::string, 3> sentences;
};

std::string SampleDate(std::size_t day, std::size_t month, std::size_t year);

class SampleDetails {
 public:
  explicit SampleDetails(Database& database);
  // The document's row must be there already.
  void Add(const SampleDocument& document);

 private:
  void AddVersion(const SampleDocument& document, std::int64_t version, std::int64_t contentId);
  void AddNotes(const SampleDocument& document);

  Database& database_;
  Statement version_;
  Statement segment_;
  Statement content_;
  Statement note_;
};

// The masks of the sample archives.
extern const char* const kSampleMasks;

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_ARCHIVE_SAMPLE_DETAILS_H_
