#include "support/response_buffer.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "support/line_order.h"
#include "values/byte_scan.h"

namespace oxaqrycln {
namespace {

// A growing run of 32-bit positions that never copies a large block.
class Positions {
 public:
  explicit Positions(std::size_t expected) { Grow(expected); }
  void Add(std::size_t position) {
    if (next_ == end_) Grow(2 * Count());
    *next_++ = static_cast<std::uint32_t>(position);
  }
  std::size_t Count() noexcept { return static_cast<std::size_t>(next_ - First()); }
  ByteBlock Take() && {
    block_.Extend(Count() * sizeof(std::uint32_t));
    return std::move(block_);
  }

 private:
  std::uint32_t* First() noexcept { return reinterpret_cast<std::uint32_t*>(block_.data()); }
  void Grow(std::size_t room) {
    const std::size_t count = Count();
    block_.Extend(count * sizeof(std::uint32_t));  // a block keeps what it counts
    block_.Reserve(room * sizeof(std::uint32_t));
    block_.Clear();
    next_ = First() + count;
    end_ = First() + block_.capacity() / sizeof(std::uint32_t);
  }

  ByteBlock block_;
  std::uint32_t* next_ = nullptr;
  std::uint32_t* end_ = nullptr;
};

}  // namespace

ResponseLines::ResponseLines(ByteBlock text, std::size_t start) : text_(std::move(text)) {
  const std::string_view all = text_.View();
  if (start >= all.size() || all.substr(start) == kLineEnd) return;
  // Room for lines of eight characters and more in a small answer; a large one grows, which moves pages only.
  Positions starts(std::min<std::size_t>((all.size() - start) / 8 + 2, 4096));
  starts.Add(start);
  ForEachPlace(all.data() + start, all.data() + all.size(), "\r\n", [&](const char* place) {
    starts.Add(static_cast<std::size_t>(place - all.data()) + kLineEnd.size());
    return true;
  });
  // The last start belongs to a line only when something stands there: one last line end is dropped.
  const bool endsOpen = !all.substr(start).ends_with(kLineEnd);
  if (endsOpen) starts.Add(all.size() + kLineEnd.size());
  count_ = static_cast<std::int32_t>(starts.Count()) - 1;
  starts_ = std::move(starts).Take();
}

void ResponseBuffer::Clear() {
  lines_.reset();
  order_.clear();
  position_ = 0;
  section_ = {};
}

void ResponseBuffer::Assign(ByteBlock text, std::size_t start) {
  lines_ = std::make_shared<ResponseLines>(std::move(text), start);
  order_.clear();
  position_ = 0;
  section_ = {};
}

void ResponseBuffer::Sort() {
  if (Count() < 2) return;
  section_ = {};
  order_ = AscendingOrder(*lines_);
}

}  // namespace oxaqrycln
