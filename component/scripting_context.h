// scripting_context.h - what the web server passes to OnStartPage: the page's context and its request.
// Implemented by the host; the component only reads.
#ifndef OXAQRYCLN_COMPONENT_SCRIPTING_CONTEXT_H_
#define OXAQRYCLN_COMPONENT_SCRIPTING_CONTEXT_H_

#include <cstdint>
#include <memory>

#include "values/variant.h"

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

#endif  // OXAQRYCLN_COMPONENT_SCRIPTING_CONTEXT_H_
