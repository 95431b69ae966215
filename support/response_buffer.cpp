#include "support/response_buffer.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "values/code_page.h"

namespace oxaqrycln {

void ResponseBuffer::Clear() {
  lines_.reset();
  order_.clear();
  position_ = 0;
  ++revision_;
}

void ResponseBuffer::Assign(ByteBlock text, std::size_t start) {
  Clear();
  const std::string_view all = text.View();
  if (start >= all.size() || all.substr(start) == kLineEnd) return;
  constexpr std::size_t kUsualLine = 64;  // bytes; room for more lines is made as they come
  const auto lines = std::make_shared<Lines>();
  lines->starts.reserve((all.size() - start) / kUsualLine + 2);
  for (std::size_t end; start < all.size(); start = end + kLineEnd.size()) {
    lines->starts.push_back(static_cast<std::uint32_t>(start));
    end = std::min(all.find(kLineEnd, start), all.size());
  }
  lines->starts.push_back(static_cast<std::uint32_t>(start));
  lines->text = std::move(text);
  lines_ = lines;
}

void ResponseBuffer::Sort() {
  std::vector<std::uint32_t> order(static_cast<std::size_t>(Count()));
  std::iota(order.begin(), order.end(), 0U);
  std::ranges::stable_sort(order, [&](std::uint32_t left, std::uint32_t right) {
    return PrecedesInUpperCase(lines_->At(left), lines_->At(right));
  });
  order_ = std::move(order);
  ++revision_;
}

}  // namespace oxaqrycln
