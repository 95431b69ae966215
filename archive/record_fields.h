// record_fields.h - the caret-quoted fields of a record line: "^first^,^second^".
// Works on views of the line; nothing is copied for a well-formed one.
#ifndef OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_
#define OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxaqrycln {

// The fields of a line, counted from 1, as the cut of "^," + line + ",^" at every "^,^" gives them.
class RecordFields {
 public:
  explicit RecordFields(std::string_view line);
  // Raises Subscript out of range for a field that the line does not have.
  const std::string& Field(std::int32_t number) const;

 private:
  std::vector<std::string> fields_;
};

// The head of a hit line: its first three fields and what stands behind them.
struct HitHead {
  std::string_view reference;
  std::string_view documentId;
  std::string_view version;
  std::string_view rest;
};
// Nothing for a line that is not cut plainly into three caret-quoted fields and a rest; RecordFields and InStrExt
// then say what it holds.
std::optional<HitHead> SplitHitHead(std::string_view line) noexcept;

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_RECORD_FIELDS_H_
