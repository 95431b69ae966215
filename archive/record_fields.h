// record_fields.h - the caret-quoted fields of a record line: "^first^,^second^".
// The fields are views of the line, which the caller keeps.
#ifndef OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_
#define OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "values/variant.h"

namespace oxaqrycln {

inline constexpr std::string_view kFieldSeparator = "^,^";
// The end that is added to a line before it is cut, so that its last caret closes its last field.
inline constexpr std::string_view kRecordEnd = ",^";

// The position of the first separator at or after from in the line with kRecordEnd added; npos if there is none.
inline std::size_t FindSeparator(std::string_view line, std::size_t from) noexcept {
  const std::size_t found = line.find(kFieldSeparator, from);
  const bool isClosedAtEnd = found == std::string_view::npos && from < line.size() && line.back() == '^';
  return isClosedAtEnd ? line.size() - 1 : found;
}

// The fields of a line, counted from 1: the pieces of "^," + line + ",^" between its separators. So a last field
// without a closing caret ends with ",^", and one with a closing caret is followed by an empty field.
class RecordFields {
 public:
  explicit RecordFields(std::string_view line);
  RecordFields(const RecordFields&) = delete;
  RecordFields& operator=(const RecordFields&) = delete;

  // Valid as long as this object and the line. Raises Subscript out of range for a field that the line does not have.
  std::string_view Field(std::int32_t number) const;
  // How many fields the line has between carets; -1 for a line without any separator.
  std::int32_t ClosedCount() const noexcept { return static_cast<std::int32_t>(fields_.size()) - 1; }
  // The part of the line that follows a field's closing caret; number is 1 to ClosedCount().
  std::string_view Behind(std::int32_t number) const;

  // Writes a field to an output, unless that was left out: as text, as an Integer, as a Long. Raise as Field does, and
  // Type mismatch or Overflow for what is no such number.
  void WriteText(std::int32_t number, Variant* output) const;
  void WriteInteger(std::int32_t number, Variant* output) const;
  void WriteLong(std::int32_t number, Variant* output) const;

 private:
  const std::string_view line_;
  std::string unclosed_;  // the last field, when it has no closing caret
  std::vector<std::string_view> fields_;
};

// One field of a line, counted from 1, found without an allocation. The fields are those of RecordFields without the
// additions: "^a^,^b^" and "^a^,^b" have two fields, the second one is "b". Nothing if the line has no such field.
std::optional<std::string_view> FindRecordField(std::string_view line, std::int32_t number) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_
