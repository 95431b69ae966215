#include "tools/oxaqry/users/csv.h"

#include "tools/oxaqry/cli/settings.h"

namespace oxaqrycln::oxaqry {
namespace {

class CsvReader {
 public:
  explicit CsvReader(std::string_view text) noexcept : text_(text) {}

  bool AtEnd() const noexcept { return at_ >= text_.size(); }

  CsvRecord TakeRecord() {
    CsvRecord record{line_, {}};
    do {
      record.fields.push_back(StartsWith("\"") ? TakeQuoted() : TakePlain());
    } while (Take(","));
    if (!AtEnd() && !TakeLineEnd()) Fail("behind a closing quote stands neither \",\" nor the end of the line");
    return record;
  }

 private:
  bool StartsWith(std::string_view part) const noexcept { return text_.substr(at_).starts_with(part); }
  bool Take(std::string_view part) noexcept {
    if (!StartsWith(part)) return false;
    at_ += part.size();
    return true;
  }
  bool TakeLineEnd() noexcept {
    if (!Take("\r\n") && !Take("\n")) return false;
    ++line_;
    return true;
  }
  [[noreturn]] void Fail(const char* why) const {
    throw CommandError("line " + std::to_string(line_) + ": " + std::string(why));
  }

  std::string TakePlain() {
    const std::size_t start = at_;
    while (!AtEnd() && text_[at_] != ',' && text_[at_] != '\n' && !StartsWith("\r\n")) {
      if (text_[at_] == '"') Fail("a quote stands inside a field that does not begin with one");
      ++at_;
    }
    return std::string(text_.substr(start, at_ - start));
  }

  std::string TakeQuoted() {
    const std::size_t firstLine = line_;
    std::string value;
    for (++at_; !AtEnd(); ++at_) {
      const char each = text_[at_];
      if (each == '"') {
        if (!StartsWith("\"\"")) {
          ++at_;
          return value;
        }
        ++at_;
      }
      if (each == '\n') ++line_;
      value += each;
    }
    line_ = firstLine;
    Fail("a quoted field has no end");
  }

  const std::string_view text_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
};

}  // namespace

std::vector<CsvRecord> ParseCsv(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::vector<CsvRecord> records;
  CsvReader reader(text);
  while (!reader.AtEnd()) {
    CsvRecord record = reader.TakeRecord();
    const bool isEmpty = record.fields.size() == 1 && record.fields[0].empty();
    if (!isEmpty) records.push_back(std::move(record));
  }
  return records;
}

}  // namespace oxaqrycln::oxaqry
