#include "archive/hit_row.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "archive/record_fields.h"
#include "component/query_state.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

#if defined(__SSE2__)
// Bit i is set where a separator begins at position i, from 0 to 15; reads 18 bytes.
std::uint32_t SeparatorsAt(const char* at) noexcept {
  __m128i found = _mm_set1_epi8(-1);
  for (std::size_t i = 0; i < kFieldSeparator.size(); ++i) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + i));
    found = _mm_and_si128(found, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(kFieldSeparator[i])));
  }
  return static_cast<std::uint32_t>(_mm_movemask_epi8(found));
}
#endif

// The fields of RecordFields in front of the display columns, and the columns.
struct HitRow {
  static constexpr std::size_t kFields = 3;  // reference, document id, version

  // Raises Subscript out of range.
  std::string_view Field(std::size_t number) const {
    if (number > fieldCount) throw RuntimeError(error::kSubscriptOutOfRange);
    return fields[number - 1];
  }

  std::array<std::string_view, kFields> fields;
  std::size_t fieldCount = 0;
  std::string_view columns;
  std::string unclosed;  // a field that no caret closes
};

// Calls visit(position) for the separators of a line with kRecordEnd added, in ascending order, until it returns false.
// They are searched at 32 positions in one step: with a search that begins where the one before ended, a walk takes
// half as long again.
template <typename Visit>
void ForEachSeparator(std::string_view line, Visit&& visit) {
  std::size_t at = 0;
#if defined(__SSE2__)
  constexpr std::size_t kBlock = 32;
  for (; line.size() - at >= kBlock + kFieldSeparator.size() - 1; at += kBlock) {
    const char* const block = line.data() + at;
    for (std::uint32_t found = SeparatorsAt(block) | SeparatorsAt(block + 16) << 16U; found != 0; found &= found - 1) {
      if (!visit(at + static_cast<std::size_t>(std::countr_zero(found)))) return;
    }
  }
#endif
  for (at = FindSeparator(line, at); at != std::string_view::npos; at = FindSeparator(line, at + 2)) {
    if (!visit(at)) return;
  }
}

void SplitRow(std::string_view line, HitRow& row) {
  // The columns follow the third separator. A separator that shares its first caret with the one before ends no field,
  // but counts.
  row.columns = line.substr(std::min<std::size_t>(1, line.size()));
  std::size_t separators = 0;
  std::size_t start = line.starts_with('^') ? 1 : 0;
  std::size_t number = start;  // of the field that begins there; 0: none does
  ForEachSeparator(line, [&](std::size_t at) {
    if (++separators == HitRow::kFields) row.columns = line.substr(std::min(at + 2, line.size()));
    if (at < start) return true;
    if (number > 0) row.fields[number - 1] = line.substr(start, at - start);
    start = at + kFieldSeparator.size();
    return ++number <= HitRow::kFields;
  });
  row.fieldCount = std::min(number, HitRow::kFields);
  if (number == 0 || number > HitRow::kFields) return;
  if (start <= line.size()) row.unclosed = std::string(line.substr(start)).append(kRecordEnd);
  row.fields[number - 1] = row.unclosed;
}

// The channel and archive of a reference "$(#channel)\archive".
void WriteReference(std::string_view reference, Variant* channel, Variant* archive) {
  constexpr std::string_view kStart = "$(#";
  constexpr std::string_view kMiddle = ")\\";
  const std::size_t middle = reference.find(kMiddle);
  const bool hasMiddle = middle != std::string_view::npos;
  if (channel != nullptr) {
    if (!hasMiddle || middle < kStart.size()) throw RuntimeError(error::kInvalidProcedureCall);
    channel->AssignText(reference.substr(kStart.size(), middle - kStart.size()));
  }
  if (archive != nullptr) {
    // Kept: without ")\" the archive is all but the first character.
    const std::size_t start = hasMiddle ? middle + kMiddle.size() : 1;
    if (start > reference.size()) throw RuntimeError(error::kInvalidProcedureCall);
    archive->AssignText(reference.substr(start));
  }
}

}  // namespace

void ReadHitRow(std::string_view line, bool isTitle, const HitRowOutputs& outputs, std::string& columns) {
  HitRow row;
  SplitRow(line, row);
  if (outputs.documentId != nullptr) outputs.documentId->AssignText(row.Field(2));
  if (outputs.version != nullptr) outputs.version->AssignText(row.Field(3));
  if (isTitle) {
    WriteText(outputs.channel, "Channel");
    WriteText(outputs.archive, "Archive");
  } else if (outputs.channel != nullptr || outputs.archive != nullptr) {
    WriteReference(row.Field(1), outputs.channel, outputs.archive);
  }
  columns = row.columns;
}

}  // namespace oxaqrycln
