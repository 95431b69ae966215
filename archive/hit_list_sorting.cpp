// Sorts hit lists by their columns, hands out their rows in that order, and removes hits.
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "archive/hit_row.h"
#include "archive/record_fields.h"
#include "archive/sort_key.h"
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// The fields of a row before its display columns: reference, document id, version.
constexpr std::int32_t kFieldsInFront = 3;

// The field that a column shows, both counted from 1. Raises Subscript out of range if the title row has no such field
// or the list has no title row.
std::int32_t FieldOfColumn(const HitListStore& store, std::int32_t column) {
  if (column < 1 || column > std::numeric_limits<std::int32_t>::max() - kFieldsInFront ||
      !FindRecordField(store.Line(HitListStore::kTitleRow), column + kFieldsInFront)) {
    throw RuntimeError(error::kSubscriptOutOfRange);
  }
  return column + kFieldsInFront;
}

std::string_view FieldOrEmpty(std::string_view line, std::int32_t field) noexcept {
  return FindRecordField(line, field).value_or(std::string_view());
}

std::vector<SortKey> MakeKeys(const HitListStore& store, std::int32_t field) {
  const KeyKind kind = KindOfFlags(FieldOrEmpty(store.Line(HitListStore::kFlagLine), field));
  std::vector<SortKey> keys;
  keys.reserve(static_cast<std::size_t>(store.HitCount()));
  for (std::int32_t hit = 0; hit < store.HitCount(); ++hit) {
    const std::string_view line = store.Line(HitListStore::kFirstHit + hit);
    keys.push_back(MakeSortKey(kind, FieldOrEmpty(line, field), static_cast<std::uint32_t>(hit)));
  }
  return keys;
}

// The direction of the next sort: the opposite of the last one or, for another column or a new list, of the order in
// which the first and the last row are now.
SortDirection NextDirection(const SortState& last, std::int32_t column, const std::vector<SortKey>& keys) {
  SortDirection direction = last.direction;
  if (direction == SortDirection::kUnset || column != last.column) {
    const bool descends = !keys.empty() && Precedes(keys.back(), keys.front());
    direction = descends ? SortDirection::kDown : SortDirection::kUp;
  }
  return direction == SortDirection::kUp ? SortDirection::kDown : SortDirection::kUp;
}

// Returns the number of rows from the title row on. Changes nothing if it raises an error.
Variant SortHits(HitListStore& store, std::int32_t column) {
  std::vector<SortKey> keys = MakeKeys(store, FieldOfColumn(store, column));
  const SortDirection direction = NextDirection(store.sortState(), column, keys);
  SortKeys(keys, direction == SortDirection::kUp ? SortOrder::kAscending : SortOrder::kDescending);
  store.Reorder([&](std::int32_t hit) { return static_cast<std::int32_t>(keys[static_cast<std::size_t>(hit)].row); });
  store.SetSortState({direction, column});
  store.MoveTo(HitListStore::kTitleRow);
  return Variant::Long(store.UpperIndex());
}

HitListStore StoreOf(std::string_view lines) {
  // Positions in the text have 32 bits, and a field's length 31.
  if (lines.size() > std::numeric_limits<std::int32_t>::max()) throw RuntimeError(error::kOutOfStringSpace);
  ByteBlock text;
  text.Reserve(lines.size());
  text.Append(lines);
  ResponseBuffer buffer;
  buffer.Assign(std::move(text), 0);
  return {std::move(buffer), 0};
}

}  // namespace

Variant clsQuery::TELOSortHitlistInit(const Variant& lngCol) {
  return state_->Run(Failed(),
                     [&](QueryState& state, Variant& result) { result = SortHits(state.hits, lngCol.ToLong()); });
}

std::string clsQuery::TELOSortHitlistNext(Variant* strChannel, Variant* strArchive, Variant* strDocID,
                                          Variant* strVer) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    HitListStore& hits = state.hits;
    if (hits.AtEnd()) return;
    ReadHitRow(hits.Line(hits.position()), hits.position() == HitListStore::kTitleRow,
               {strChannel, strArchive, strDocID, strVer}, result);
    hits.MoveTo(hits.position() + 1);
  });
}

Variant clsQuery::TELOSortHitlist2Init(const Variant& strHitLines, const Variant& intSortCol) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    std::string scratch;
    HitListStore given = StoreOf(strHitLines.TextView(scratch));
    given.SetSortState(state.givenHits.sortState());
    const Variant rows = SortHits(given, intSortCol.ToLong());
    state.givenHits = std::move(given);
    result = rows;
  });
}

std::string clsQuery::TELOSortHitlist2Next() {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    HitListStore& hits = state.givenHits;
    if (hits.AtEnd()) return;
    result = std::string(hits.Line(hits.position()));
    hits.MoveTo(hits.position() + 1);
  });
}

Variant clsQuery::TELODeleteFromHitlist(const Variant& lngLine) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    const std::int32_t line = lngLine.ToLong();
    if (line < 1) throw RuntimeError(error::kSubscriptOutOfRange);
    state.hits.RemoveHit(line - 1);
    result = Variant::Long(state.hits.HitCount());
  });
}

}  // namespace oxaqrycln
