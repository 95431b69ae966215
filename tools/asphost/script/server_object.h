// server_object.h - Server: components, encodings and paths for the page.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SERVER_OBJECT_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SERVER_OBJECT_H_

#include "tools/asphost/script/page_run.h"

namespace oxaqrycln::asphost {

class ServerObject : public PageObject<ServerObject> {
 public:
  // The context is what an object's OnStartPage receives. It owns this object.
  ServerObject(std::shared_ptr<PageRun> run, IDispatch& context) : PageObject(std::move(run)), context_(context) {}
  static std::span<const Member<ServerObject>> Members();

 private:
  OwnedVariant CreateObject(Arguments& arguments);
  OwnedVariant HtmlEncodeText(Arguments& arguments);
  OwnedVariant UrlEncodeText(Arguments& arguments);
  OwnedVariant MapPath(Arguments& arguments);
  OwnedVariant ScriptTimeout(Arguments& arguments);

  IDispatch& context_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_SERVER_OBJECT_H_
