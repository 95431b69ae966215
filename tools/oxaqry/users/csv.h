// csv.h - records of comma separated values as RFC 4180 describes them, with the line each begins on.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_USERS_CSV_H_
#define OXAQRYCLN_TOOLS_OXAQRY_USERS_CSV_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln::oxaqry {

struct CsvRecord {
  std::size_t line = 1;  // from 1
  std::vector<std::string> fields;
};

// A field with quotes where it needs them.
std::string CsvField(const std::string& text);

// Lines end with LF or CR LF; empty ones are left out, as is a byte order mark. Raises CommandError, which names the
// line, for a quote in the wrong place or without an end.
std::vector<CsvRecord> ParseCsv(std::string_view text);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_USERS_CSV_H_
