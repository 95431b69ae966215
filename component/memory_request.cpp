#include "component/memory_request.h"

#include <algorithm>
#include <utility>

namespace oxaqrycln {
namespace {

class Context final : public ScriptingContext {
 public:
  explicit Context(std::shared_ptr<PageRequest> request) noexcept : request_(std::move(request)) {}
  std::shared_ptr<PageRequest> Request() override { return request_; }

 private:
  const std::shared_ptr<PageRequest> request_;
};

}  // namespace

Variant::Bytes MemoryRequest::BinaryRead(std::int64_t byteCount) {
  const auto left = static_cast<std::int64_t>(body_.size() - position_);
  const auto count = static_cast<std::ptrdiff_t>(std::clamp<std::int64_t>(byteCount, 0, left));
  const auto from = body_.begin() + static_cast<std::ptrdiff_t>(position_);
  position_ += static_cast<std::size_t>(count);
  return {from, from + count};
}

std::shared_ptr<ScriptingContext> MemoryContext(std::string body) {
  return std::make_shared<Context>(std::make_shared<MemoryRequest>(std::move(body)));
}

}  // namespace oxaqrycln
