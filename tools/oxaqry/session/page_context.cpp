#include "tools/oxaqry/session/page_context.h"

#include <algorithm>
#include <utility>

namespace oxaqrycln::oxaqry {
namespace {

class BodyRequest : public PageRequest {
 public:
  explicit BodyRequest(Variant::Bytes body) : body_(std::move(body)) {}

  std::int64_t TotalBytes() const override { return static_cast<std::int64_t>(body_.size()); }

  Variant::Bytes BinaryRead(std::int64_t byteCount) override {
    const std::int64_t count = std::clamp<std::int64_t>(byteCount, 0, TotalBytes() - position_);
    const auto from = body_.begin() + position_;
    position_ += count;
    return {from, from + count};
  }

 private:
  Variant::Bytes body_;
  std::int64_t position_ = 0;
};

class PageContext : public ScriptingContext {
 public:
  explicit PageContext(Variant::Bytes body) : request_(std::make_shared<BodyRequest>(std::move(body))) {}
  std::shared_ptr<PageRequest> Request() override { return request_; }

 private:
  std::shared_ptr<PageRequest> request_;
};

}  // namespace

std::shared_ptr<ScriptingContext> MakePageContext(Variant::Bytes body) {
  return std::make_shared<PageContext>(std::move(body));
}

}  // namespace oxaqrycln::oxaqry
