// response_buffer.h - the last answer's data lines, and which of them is next.
// Knows nothing of sockets or commands. One per clsQuery; copies share the lines.
#ifndef OXAQRYCLN_SUPPORT_RESPONSE_BUFFER_H_
#define OXAQRYCLN_SUPPORT_RESPONSE_BUFFER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/byte_block.h"
#include "values/errors.h"

namespace oxaqrycln {

class ResponseBuffer {
 public:
  // No line.
  void Clear();
  // The lines of the text from position start on. A line end at the very end is dropped; an empty rest has no line.
  void Assign(ByteBlock text, std::size_t start);

  std::int32_t Count() const noexcept {
    return lines_ == nullptr ? 0 : static_cast<std::int32_t>(lines_->starts.size()) - 1;
  }
  // A line without its line end, by its index from 0. Raises Subscript out of range.
  std::string_view Line(std::int32_t index) const {
    if (index < 0 || index >= Count()) throw RuntimeError(error::kSubscriptOutOfRange);
    return lines_->At(order_.empty() ? static_cast<std::uint32_t>(index) : order_[static_cast<std::size_t>(index)]);
  }

  // The index of the next line to hand out.
  std::int32_t position() const noexcept { return position_; }
  void MoveTo(std::int32_t position) noexcept { position_ = position; }
  bool AtEnd() const noexcept { return position_ >= Count(); }
  // The next line, moving past it. Raises Subscript out of range at the end.
  std::string_view Take() {
    const std::string_view line = Line(position_);
    ++position_;
    return line;
  }

  // Changes whenever the lines or their order do.
  std::uint32_t revision() const noexcept { return revision_; }

  // Puts the lines in ascending order of their upper-cased text, by character codes; equal ones keep their order.
  void Sort();

 private:
  static constexpr std::string_view kLineEnd = "\r\n";

  // Never changes once it is complete, so that copies can share it.
  struct Lines {
    std::string_view At(std::uint32_t line) const {
      return {text.data() + starts[line], starts[line + 1] - starts[line] - kLineEnd.size()};
    }

    ByteBlock text;
    std::vector<std::uint32_t> starts;  // where each line starts, and where one more would
  };

  std::shared_ptr<const Lines> lines_;  // null for no line
  std::vector<std::uint32_t> order_;    // after a sort: the line at each index, as it arrived
  std::int32_t position_ = 0;
  std::uint32_t revision_ = 0;
};

// What one knows about the lines of one revision of a buffer: those from begin on to end, not included, belong
// together.
struct LineRange {
  bool Holds(const ResponseBuffer& buffer, std::int32_t position) const noexcept {
    return revision == buffer.revision() && begin <= position && position <= end;
  }

  std::uint32_t revision = 0;
  std::int32_t begin = 0;
  std::int32_t end = -1;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_SUPPORT_RESPONSE_BUFFER_H_
