// response_object.h - Response: the answer. It is kept until the page ends, so that an error can replace it.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_RESPONSE_OBJECT_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_RESPONSE_OBJECT_H_

#include "tools/asphost/script/page_run.h"

namespace oxaqrycln::asphost {

class ResponseObject : public PageObject<ResponseObject> {
 public:
  using PageObject::PageObject;
  static std::span<const Member<ResponseObject>> Members();

 private:
  OwnedVariant Write(Arguments& arguments);
  OwnedVariant WriteBlock(Arguments& arguments);
  OwnedVariant BinaryWrite(Arguments& arguments);
  OwnedVariant Redirect(Arguments& arguments);
  OwnedVariant End(Arguments& arguments);
  OwnedVariant Clear(Arguments& arguments);
  OwnedVariant AddHeader(Arguments& arguments);
  OwnedVariant Status(Arguments& arguments);
  OwnedVariant ContentType(Arguments& arguments);
  OwnedVariant Charset(Arguments& arguments);
  OwnedVariant CodePage(Arguments& arguments);
  OwnedVariant CacheControl(Arguments& arguments);
  OwnedVariant Expires(Arguments& arguments);
  OwnedVariant Cookies(Arguments& arguments);
  OwnedVariant Ignored(Arguments& arguments);

  void Append(std::string_view bytes);
  void SetHeader(const std::string& name, const std::string& value);
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_RESPONSE_OBJECT_H_
