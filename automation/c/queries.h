// queries.h - what a handle of a query stands for.
#ifndef OXAQRYCLN_AUTOMATION_C_QUERIES_H_
#define OXAQRYCLN_AUTOMATION_C_QUERIES_H_

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "automation/c/arguments.h"
#include "automation/c/handle_table.h"
#include "automation/method_table.h"
#include "component/query_watch.h"

namespace oxaqrycln::c {

// An object in use as long as this lives.
class InUse {
 public:
  explicit InUse(int& uses) noexcept : uses_(uses) { uses_ = -1; }
  ~InUse() { uses_ = 0; }
  InUse(const InUse&) = delete;
  InUse& operator=(const InUse&) = delete;

 private:
  int& uses_;
};

class Query final : public HandleObject {
 public:
  static constexpr HandleKind kKind = HandleKind::Query;

  Query();
  // The handle that the query has got.
  void Connect(const SharedHandle& handle) noexcept { handle_ = handle; }

  // Runs body(), which calls methods of the instance. Meanwhile a cancellation by the handle holds, and the progress is
  // kept.
  template <typename Body>
  void Run(Body&& body) {
    TakeCancellation();
    body();
    KeepProgress(watch_.Progress());
  }
  // Has the instance use the memory of a result for the next one.
  void Reuse(Variant& result) noexcept { QueryWatch::ReuseText(instance_, result); }

  clsQuery& instance() noexcept { return instance_; }
  QueryWatch& watch() noexcept { return watch_; }
  Arguments& arguments() noexcept { return arguments_; }
  // What the lists of the query are written into, one at a time.
  const std::shared_ptr<RowMemory>& rowMemory() const noexcept { return rowMemory_; }
  // Whether the handle is cancelled; from any thread.
  bool IsCancelled() const noexcept {
    return handle_.shared->cancelled.load(std::memory_order_relaxed) == handle_.generation;
  }
  // The method of a number, for a call; null for another member and for none, after Fail().
  const MethodEntry* MethodOf(std::int32_t number) {
    return lastMethod_ != nullptr && lastMethod_->number == number ? lastMethod_ : FindMethod(number);
  }
  // A text for the caller that is valid until the next call; place 0 or 1.
  std::string_view Keep(std::size_t place, std::string_view windows1252);

 private:
  const MethodEntry* FindMethod(std::int32_t number);
  void TakeCancellation() noexcept;
  void KeepProgress(const RequestProgress& progress) noexcept;

  clsQuery instance_;
  QueryWatch watch_;
  Arguments arguments_;
  const std::shared_ptr<RowMemory> rowMemory_ = std::make_shared<RowMemory>();
  SharedHandle handle_;
  bool isCancelled_ = false;
  std::array<std::string, 2> texts_;
  const MethodEntry* lastMethod_ = nullptr;  // a page calls one over and over
};

// Runs body(query), or body(query, finder), with a query that no running call uses; meanwhile it is in use. First
// releases what other threads have freed.
template <typename Body>
std::int32_t WithQuery(oxaqry_query* handle, Body&& body) noexcept {
  const Finder finder;
  finder.ReleaseQueued();
  return With<Query>(finder, handle, [&](Query& query) -> std::int32_t {
    const InUse running(query.uses);
    if constexpr (std::is_invocable_v<Body&, Query&>) {
      return body(query);
    } else {
      return body(query, finder);
    }
  });
}

}  // namespace oxaqrycln::c

#endif  // OXAQRYCLN_AUTOMATION_C_QUERIES_H_
