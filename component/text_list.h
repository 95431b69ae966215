// text_list.h - texts that are handed out one after another: the segment texts of a document, or its notes.
// Independent of the response buffer. One per clsQuery.
#ifndef OXAQRYCLN_COMPONENT_TEXT_LIST_H_
#define OXAQRYCLN_COMPONENT_TEXT_LIST_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oxaqrycln {

class TextList {
 public:
  // Replaces the texts and begins again at the first; returns how many there are.
  std::int32_t Assign(std::vector<std::string> texts) {
    texts_ = std::move(texts);
    position_ = 0;
    return static_cast<std::int32_t>(texts_.size());
  }
  // The next text, "" at the end.
  std::string_view Next() noexcept {
    return position_ < texts_.size() ? std::string_view(texts_[position_++]) : std::string_view();
  }

 private:
  std::vector<std::string> texts_;
  std::size_t position_ = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_TEXT_LIST_H_
