// scripting_context.h - what the web server hands to OnStartPage: the page's context and its request.
// Implemented by the host; the component only reads.
#ifndef OXAQRYCLN_PLATFORM_SCRIPTING_CONTEXT_H_
#define OXAQRYCLN_PLATFORM_SCRIPTING_CONTEXT_H_

#include <cstdint>
#include <memory>

#include "platform/variant.h"

#pragma GCC visibility push(default)

namespace oxaqrycln {

// The web request a page answers.
class PageRequest : public Object {
 public:
  // The length of the request's body in bytes.
  virtual std::int64_t TotalBytes() const = 0;
  // The next bytes of the body, at most byteCount of them; none at its end.
  virtual Variant::Bytes BinaryRead(std::int64_t byteCount) = 0;
};

class ScriptingContext : public Object {
 public:
  virtual std::shared_ptr<PageRequest> Request() = 0;
};

}  // namespace oxaqrycln

#pragma GCC visibility pop

#endif  // OXAQRYCLN_PLATFORM_SCRIPTING_CONTEXT_H_
