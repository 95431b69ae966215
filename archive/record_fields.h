// record_fields.h - the caret-quoted fields of a record line: "^first^,^second^".
#ifndef OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_
#define OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "values/byte_scan.h"
#include "values/variant.h"

namespace oxaqrycln {

// The fields of a line, counted from 1, as the cut of "^," + line + ",^" at every "^,^" gives them.
class RecordFields {
 public:
  explicit RecordFields(std::string_view line);
  RecordFields(const RecordFields&) = delete;
  RecordFields& operator=(const RecordFields&) = delete;
  // Valid as long as this object, as what Behind returns. Raises Subscript out of range for a field that the line does
  // not have.
  std::string_view Field(std::int32_t number) const;
  // How many fields the line has between carets; negative for one without any.
  std::int32_t ClosedCount() const noexcept { return static_cast<std::int32_t>(fields_.size()) - 2; }
  // What stands behind a field's closing caret; number is 1 to ClosedCount().
  std::string_view Behind(std::int32_t number) const;

  // Writes a field to an output, unless that was left out: as text, as an Integer, as a Long. Raise as Field does, and
  // Type mismatch or Overflow for what is no such number.
  void WriteText(std::int32_t number, Variant* output) const;
  void WriteInteger(std::int32_t number, Variant* output) const;
  void WriteLong(std::int32_t number, Variant* output) const;

 private:
  const std::string closed_;
  std::vector<std::string_view> fields_;
};

// Finds one field of a line, counted from 1, without an allocation. The fields are those of RecordFields, but the caret
// that closes the line and what the cut finds behind it count for nothing: "^a^,^b^" has two fields. False for a field
// that the line does not have.
bool FindRecordField(std::string_view line, std::int32_t number, std::string_view& field) noexcept;

// The head of a hit line: its first three fields and what stands behind them.
struct HitHead {
  std::string_view reference;
  std::string_view documentId;
  std::string_view version;
  std::string_view rest;
};
// False for a line that is not cut plainly into three caret-quoted fields and a rest; RecordFields and InStrExt then
// say what it holds.
inline bool SplitHitHead(std::string_view line, HitHead& head) noexcept {
  if (line.empty() || line[0] != '^') return false;
  const char* const last = line.data() + line.size();
  const char* field = line.data() + 1;
  std::array<const char*, 3> ends;  // NOLINT: set as they are found
  std::size_t count = 0;
  ForEachPlace(line.data(), last, "^,^", [&](const char* place) {
    // A field that begins with ",^" makes places overlap, which the plain way does not follow.
    if (place < field) return false;
    ends[count] = place;
    field = place + 3;
    return ++count < ends.size();
  });
  if (count < ends.size()) return false;
  head = {{line.data() + 1, ends[0]}, {ends[0] + 3, ends[1]}, {ends[1] + 3, ends[2]}, {ends[2] + 2, last}};
  return true;
}

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_
