// memory_request.h - a page's request whose body is in memory, for hosts that have read it: a CGI program, a test, a
// page host of another language.
#ifndef OXAQRYCLN_COMPONENT_MEMORY_REQUEST_H_
#define OXAQRYCLN_COMPONENT_MEMORY_REQUEST_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "component/scripting_context.h"

namespace oxaqrycln {

class MemoryRequest final : public PageRequest {
 public:
  explicit MemoryRequest(std::string body) noexcept : body_(std::move(body)) {}

  std::int64_t TotalBytes() const override { return static_cast<std::int64_t>(body_.size()); }
  Variant::Bytes BinaryRead(std::int64_t byteCount) override;

 private:
  const std::string body_;
  std::size_t position_ = 0;
};

// A scripting context with such a request: query.OnStartPage(MemoryContext(body)).
std::shared_ptr<ScriptingContext> MemoryContext(std::string body);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_COMPONENT_MEMORY_REQUEST_H_
