// outliner_list.h - the nodes of an outliner that a page walks through: the children of one node.
// Independent of the response buffer. One per clsQuery.
#ifndef OXAQRYCLN_COMPONENT_OUTLINER_LIST_H_
#define OXAQRYCLN_COMPONENT_OUTLINER_LIST_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace oxaqrycln {

struct OutlinerNode {
  std::int32_t id = 0;
  std::int16_t level = 0;
  std::string fieldId;
  std::string description;
  std::string dataType;
  std::string content;
  bool isExpanded = false;
  std::int32_t childCount = 0;
};

class OutlinerList {
 public:
  // Replaces the nodes and begins again at the first; returns how many there are.
  std::int32_t Assign(std::vector<OutlinerNode> nodes) {
    nodes_ = std::move(nodes);
    Reset();
    return static_cast<std::int32_t>(nodes_.size());
  }
  // The next node, null at the end. It is there until the next Assign.
  const OutlinerNode* Next() noexcept { return position_ < nodes_.size() ? &nodes_[position_++] : nullptr; }
  void Reset() noexcept { position_ = 0; }

 private:
  std::vector<OutlinerNode> nodes_;
  std::size_t position_ = 0;
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_OUTLINER_LIST_H_
