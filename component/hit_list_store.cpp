#include "component/hit_list_store.h"

#include "values/errors.h"

namespace oxaqrycln {

void HitListStore::RemoveHit(std::int32_t hit) {
  if (hit < 0 || hit >= HitCount()) throw RuntimeError(error::kSubscriptOutOfRange);
  if (order_.empty()) Reorder([](std::int32_t k) { return k; });
  order_.erase(order_.begin() + hit);
  --upperIndex_;
  if (position_ > kFirstHit + hit) --position_;
}

}  // namespace oxaqrycln
