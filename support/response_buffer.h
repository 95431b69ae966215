// response_buffer.h - the last answer's data lines, and which of them is next.
// Knows nothing of sockets or commands. One per clsQuery.
#ifndef OXAQRYCLN_SUPPORT_RESPONSE_BUFFER_H_
#define OXAQRYCLN_SUPPORT_RESPONSE_BUFFER_H_

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/byte_block.h"
#include "values/errors.h"

namespace oxaqrycln {

// The lines of one answer: its text, held once, and where each line starts. Never changes, so that it can be shared.
class ResponseLines {
 public:
  static constexpr std::string_view kLineEnd = "\r\n";

  ResponseLines() = default;
  // The lines of what stands in text from position start on. One line end at the very end is dropped; nothing is no
  // line.
  ResponseLines(ByteBlock text, std::size_t start);

  std::int32_t Count() const noexcept { return count_; }
  // A line without its line end. Raises Subscript out of range.
  std::string_view Line(std::int32_t index) const {
    if (index < 0 || index >= count_) throw RuntimeError(error::kSubscriptOutOfRange);
    const std::uint32_t start = Starts()[index];
    return {text_.data() + start, Starts()[index + 1] - start - kLineEnd.size()};
  }

 private:
  const std::uint32_t* Starts() const noexcept { return reinterpret_cast<const std::uint32_t*>(starts_.data()); }

  ByteBlock text_;
  ByteBlock starts_;  // 32-bit positions: count_ starts of lines, and where one more would start
  std::int32_t count_ = 0;
};

class ResponseBuffer {
 public:
  // Lines from begin on to end, of which one knows that they belong together; none at first and in a new answer.
  struct Section {
    std::int32_t begin = 0;
    std::int32_t end = -1;
    bool Holds(std::int32_t position) const noexcept { return begin <= position && position <= end; }
  };

  // No line.
  void Clear();
  void Assign(ByteBlock text, std::size_t start);

  std::int32_t Count() const noexcept { return lines_ == nullptr ? 0 : lines_->Count(); }
  // A line by its index from 0. Raises Subscript out of range.
  std::string_view Line(std::int32_t index) const {
    if (index < 0 || index >= Count()) throw RuntimeError(error::kSubscriptOutOfRange);
    return lines_->Line(order_.empty() ? index : order_[static_cast<std::size_t>(index)]);
  }

  // The index of the next line to hand out.
  std::int32_t position() const noexcept { return position_; }
  void MoveTo(std::int32_t position) noexcept { position_ = position; }
  bool AtEnd() const noexcept { return position_ >= Count(); }
  // The next line, moving past it; nothing to be called at the end.
  std::string_view Take() {
    const std::string_view line = Line(position_);
    ++position_;
    return line;
  }

  // What the last SetSection said.
  const Section& section() const noexcept { return section_; }
  void SetSection(const Section& section) noexcept { section_ = section; }

  // Puts the lines in ascending order of their upper-cased text, by character codes; equal ones keep their order.
  void Sort();
  // The lines in the order they arrived in, to be kept beyond the next answer; none while the buffer is clear.
  std::shared_ptr<const ResponseLines> Share() const noexcept { return lines_; }

 private:
  std::shared_ptr<const ResponseLines> lines_;
  std::vector<std::int32_t> order_;  // after a sort: which line stands at each index
  std::int32_t position_ = 0;
  Section section_;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_SUPPORT_RESPONSE_BUFFER_H_
