// page_object.h - what a page's script sees without further ado: Request, Response, Server, Session and Application.
// The engine takes its members as global names, so that Request("x") reaches the member with its argument and is passed
// on to the default member of the object. Components receive it as the scripting context.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_OBJECT_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_OBJECT_H_

#include <array>
#include <memory>

#include "tools/asphost/script/page_run.h"

namespace oxaqrycln::asphost {

class GlobalObject : public ScriptObjectBase {
 public:
  explicit GlobalObject(std::shared_ptr<PageRun> run);

 protected:
  // A call with arguments goes to the default member of the object that is named.
  OwnedVariant Call(DISPID member, Arguments& arguments) override;
  DISPID Find(std::wstring_view name) const override;

 private:
  const std::array<ComReference<ScriptObjectBase>, 5> objects_;
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_PAGE_OBJECT_H_
