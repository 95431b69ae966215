// request_object.h - Request: what the visitor sent.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_REQUEST_OBJECT_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_REQUEST_OBJECT_H_

#include "tools/asphost/script/page_run.h"

namespace oxaqrycln::asphost {

// A name looks in the query string, then in the form, the cookies and the server's variables.
class RequestObject : public PageObject<RequestObject> {
 public:
  using PageObject::PageObject;
  static std::span<const Member<RequestObject>> Members();

 private:
  OwnedVariant Item(Arguments& arguments);
  OwnedVariant QueryString(Arguments& arguments);
  OwnedVariant Form(Arguments& arguments);
  OwnedVariant Cookies(Arguments& arguments);
  OwnedVariant ServerVariables(Arguments& arguments);
  OwnedVariant TotalBytes(Arguments& arguments);
  OwnedVariant BinaryRead(Arguments& arguments);

  // The value of a name, Empty without one; called without a name, the collection.
  OwnedVariant FieldOf(const Fields& fields, const std::string& wholeText, Arguments& arguments);
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_REQUEST_OBJECT_H_
