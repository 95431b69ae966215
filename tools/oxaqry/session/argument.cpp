#include "tools/oxaqry/session/argument.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "component/scripting_context.h"
#include "values/base64.h"

namespace oxaqrycln::oxaqry {
namespace {

// The request of a page whose body is given.
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

Variant ContextFromJson(const Json& json) {
  if (!json.is_object() || json.size() != 1 || json.begin().key() != "body" || !json.begin().value().is_string()) {
    throw ValueError("a context is written {\"context\":{\"body\":\"<Base64>\"}}");
  }
  const auto body = DecodeBase64(json.begin().value().get_ref<const std::string&>());
  if (!body) throw ValueError("the context's body is not Base64");
  return Variant(Variant::ObjectRef(std::make_shared<PageContext>(Variant::Bytes(body->begin(), body->end()))));
}

}  // namespace

Argument ArgumentFromJson(const Json& json) {
  if (json.is_null()) return {.isLeftOut = true};
  if (json.is_object() && json.size() == 1) {
    const std::string& name = json.begin().key();
    if (name == "ref") return {.value = ValueFromJson(json.begin().value()), .isReference = true};
    if (name == "context") return {.value = ContextFromJson(json.begin().value())};
  }
  return {.value = ValueFromJson(json)};
}

}  // namespace oxaqrycln::oxaqry
