// hit_list_store.h - the lines of a hit list in their present order, kept beyond the next answer, with the position
// that a page has read up to and how the list was sorted last. Shares the answer's lines; order and deletions are
// positions in them. Knows nothing of fields or keys.
#ifndef OXAQRYCLN_COMPONENT_HIT_LIST_STORE_H_
#define OXAQRYCLN_COMPONENT_HIT_LIST_STORE_H_

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>
#include <utility>

#include "support/response_buffer.h"
#include "values/errors.h"

namespace oxaqrycln {

enum class SortDirection { kUnset, kUp, kDown };

struct SortState {
  SortDirection direction = SortDirection::kUnset;
  std::int32_t column = 0;  // counted from 1; 0: none yet
};

// Line 0 has a flag for each field of the rows, line 1 the column titles; the hits follow. The rows that a page shows
// are the lines kTitleRow to UpperIndex().
class HitListStore {
 public:
  static constexpr std::int32_t kFlagLine = 0;
  static constexpr std::int32_t kTitleRow = 1;
  static constexpr std::int32_t kFirstHit = 2;

  HitListStore() = default;
  // The lines of a buffer from firstLine on, which it shares; the read position is the title row.
  HitListStore(ResponseBuffer lines, std::int32_t firstLine)
      : lines_(std::move(lines)), firstLine_(firstLine), upperIndex_(lines_.Count() - firstLine - 1) {}

  // The index of the last line; -1 for no line.
  std::int32_t UpperIndex() const noexcept { return upperIndex_; }
  std::int32_t HitCount() const noexcept { return upperIndex_ < kFirstHit ? 0 : upperIndex_ - kFirstHit + 1; }
  // A line by its present index. Raises Subscript out of range.
  std::string_view Line(std::int32_t index) const {
    if (index < 0 || index > upperIndex_) throw RuntimeError(error::kSubscriptOutOfRange);
    return lines_.Line(firstLine_ + Original(index));
  }

  // The index of the next line to hand out.
  std::int32_t position() const noexcept { return position_; }
  void MoveTo(std::int32_t position) noexcept { position_ = position; }
  bool AtEnd() const noexcept { return position_ > upperIndex_; }

  const SortState& sortState() const noexcept { return sortState_; }
  void SetSortState(const SortState& sortState) noexcept { sortState_ = sortState; }

  // Puts the hits in another order: hit k, counted from 0, becomes the one that was hit hitAt(k). The read position
  // stays. Changes nothing if it raises an error.
  template <typename HitAt>
  void Reorder(HitAt&& hitAt) {
    std::deque<std::int32_t> order(static_cast<std::size_t>(HitCount()));
    std::int32_t k = 0;
    for (std::int32_t& each : order) each = Original(kFirstHit + hitAt(k++));
    order_.swap(order);
  }

  // Removes a hit, counted from 0; a read position after it stays at its row. Moves the four-byte positions between the
  // hit and the nearer end of the list; the first removal makes a list of all positions. Raises Subscript out of range.
  void RemoveHit(std::int32_t hit);

 private:
  // The index that a line had at first.
  std::int32_t Original(std::int32_t index) const noexcept {
    return index < kFirstHit || order_.empty() ? index : order_[static_cast<std::size_t>(index - kFirstHit)];
  }

  ResponseBuffer lines_;
  std::int32_t firstLine_ = 0;
  std::int32_t upperIndex_ = -1;
  std::int32_t position_ = kTitleRow;
  std::deque<std::int32_t> order_;  // the first index of each hit; empty while no line has moved
  SortState sortState_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_HIT_LIST_STORE_H_
