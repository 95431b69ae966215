#include "tools/oxaqry/session/argument.h"

#include "component/memory_request.h"
#include "values/base64.h"

namespace oxaqrycln::oxaqry {
namespace {

Variant ContextFromJson(const Json& json) {
  if (!json.is_object() || json.size() != 1 || json.begin().key() != "body" || !json.begin().value().is_string()) {
    throw ValueError("a context is written {\"context\":{\"body\":\"<Base64>\"}}");
  }
  const auto body = DecodeBase64(json.begin().value().get_ref<const std::string&>());
  if (!body) throw ValueError("the context's body is not Base64");
  return Variant(Variant::ObjectRef(MemoryContext(*body)));
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
