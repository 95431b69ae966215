#include "tools/oxaqry/users/csv.h"

#include <algorithm>

#include "tools/oxaqry/cli/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

class CsvReader {
 public:
  explicit CsvReader(std::string_view text) noexcept : rest_(text) { Take("\xEF\xBB\xBF"); }

  bool AtEnd() const noexcept { return rest_.empty(); }

  CsvRecord TakeRecord() {
    CsvRecord record{line_, {}};
    do {
      record.fields.push_back(Take("\"") ? TakeQuoted() : TakePlain());
    } while (Take(","));
    if (!AtEnd() && !Take("\r\n") && !Take("\n")) Fail(line_, "a closing quote is not followed by \",\" or a line end");
    ++line_;
    return record;
  }

 private:
  bool Take(std::string_view part) noexcept {
    if (!rest_.starts_with(part)) return false;
    rest_.remove_prefix(part.size());
    return true;
  }
  [[noreturn]] static void Fail(std::size_t line, const std::string& why) {
    throw CommandError("line " + std::to_string(line) + ": " + why);
  }

  std::string TakePlain() {
    const std::string_view line = rest_.substr(0, rest_.find('\n'));
    std::string field(line.substr(0, line.find(',')));
    if (field.size() == line.size() && line.size() < rest_.size() && field.ends_with('\r')) field.pop_back();
    if (field.find('"') != std::string::npos) Fail(line_, "a field contains a quote but does not begin with one");
    rest_.remove_prefix(field.size());
    return field;
  }

  // The opening quote has been taken.
  std::string TakeQuoted() {
    const std::size_t firstLine = line_;
    std::string field;
    for (;;) {
      const std::size_t end = rest_.find('"');
      if (end == std::string_view::npos) Fail(firstLine, "a quoted field has no closing quote");
      field += rest_.substr(0, end);
      rest_.remove_prefix(end + 1);
      if (!Take("\"")) break;
      field += '"';
    }
    line_ += static_cast<std::size_t>(std::ranges::count(field, '\n'));
    return field;
  }

  std::string_view rest_;
  std::size_t line_ = 1;
};

}  // namespace

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string field = "\"";
  for (const char character : text) field.append(character == '"' ? 2 : 1, character);
  return field + '"';
}

std::vector<CsvRecord> ParseCsv(std::string_view text) {
  std::vector<CsvRecord> records;
  for (CsvReader reader(text); !reader.AtEnd();) {
    records.push_back(reader.TakeRecord());
    if (records.back().fields == std::vector<std::string>{""}) records.pop_back();
  }
  return records;
}

}  // namespace oxaqrycln::oxaqry
