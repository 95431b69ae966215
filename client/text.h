// text.h - the texts of the archive: lists of fields, and what may be part of a request.
#ifndef OXAQRYCLN_CLIENT_TEXT_H_
#define OXAQRYCLN_CLIENT_TEXT_H_

#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::client {

// The fields of a record "^a^,^b^", without the carets around. A record without carets is one field, "" has none. Works
// for UTF-8 and for texts of the class.
std::vector<std::string> Fields(std::string_view record);

// A text as a request takes it, in Windows-1252. what names the value in the error. Raises BadArgument for a text that
// is not UTF-8 or has a character that the archive cannot hold, with its position, and for one that would end its field
// of the request: it contains "^,^", or ends with "^,".
std::string RequestText(std::string_view utf8, std::string_view what);

// A date that a server writes, "15.11.2026" with or without a time "20:31" or "20:31:07" behind a blank, in ISO 8601:
// "2026-11-15" or "2026-11-15T20:31:07". Any other text is returned as it is.
std::string IsoDate(std::string_view text);

// A text with its line ends as "\r\n", which a note has, and none behind the last line.
std::string WithNetworkLineEnds(std::string_view text);

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_TEXT_H_
