// document.h - a document of the archive with its segments, texts and notes. Plain data; all texts are UTF-8.
#ifndef OXAQRYCLN_CLIENT_DOCUMENT_H_
#define OXAQRYCLN_CLIENT_DOCUMENT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "client/hit_list.h"

namespace oxaqrycln::client {

// A hit of the query in a text: its first character, counted from 0, and its length, both in characters.
struct Mark {
  std::size_t start = 0;
  std::size_t length = 0;
  friend bool operator==(const Mark&, const Mark&) = default;
};

// A part of a text between the edges of its marks.
struct TextPiece {
  std::string text;
  bool isMarked = false;
};

struct MarkedText {
  std::string text;  // its lines end with "\n"
  std::vector<Mark> marks;
  // The whole text in pieces, for a page that encodes each of them and then puts a tag around those that are marked.
  std::vector<TextPiece> Pieces() const;
};

struct Segment {
  std::int32_t index = 0;  // names the segment in Content::OfSegment
  std::int32_t fieldId = 0;
  std::string name;
  std::string title;
  std::int32_t type = 0;  // as the server numbers them
  MarkedText text;
  std::int64_t hitCount = 0;
  std::int64_t textLength = 0;     // in characters
  std::int64_t contentLength = 0;  // of the stored content in bytes; 0 without any
  std::string extension;
  std::string fileName;
  std::int32_t status = 0;
  std::string layout;
  std::int64_t thumbnailSize = 0;
};

struct Note {
  std::string author;  // "" when the server's header cannot be told from the text, which then begins with it
  std::string time;    // ISO 8601, "2026-11-15T20:31:00"
  std::string text;    // its lines end with "\n"
};

struct Document {
  DocumentName name;  // with the version that was found
  std::int64_t length = 0;
  std::string created;  // dates in ISO 8601 as IsoDate makes them
  std::string changed;
  std::string title;
  std::int32_t fieldCount = 0;
  std::int32_t textCount = 0;
  std::int32_t imageCount = 0;
  std::int32_t fileCount = 0;
  std::vector<Segment> segments;
  std::vector<Note> notes;
};

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_DOCUMENT_H_
