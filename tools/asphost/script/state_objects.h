// state_objects.h - Session and Application: values that outlive a page.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_STATE_OBJECTS_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_STATE_OBJECTS_H_

#include <functional>

#include "tools/asphost/script/page_run.h"

namespace oxaqrycln::asphost {

// The values of one visitor.
class SessionObject : public PageObject<SessionObject> {
 public:
  using PageObject::PageObject;
  static std::span<const Member<SessionObject>> Members();

 private:
  OwnedVariant Item(Arguments& arguments);
  OwnedVariant Contents(Arguments& arguments);
  OwnedVariant SessionId(Arguments& arguments);
  OwnedVariant Timeout(Arguments& arguments);
  OwnedVariant Abandon(Arguments& arguments);
};

// The values that all visitors share.
class ApplicationObject : public PageObject<ApplicationObject> {
 public:
  using PageObject::PageObject;
  static std::span<const Member<ApplicationObject>> Members();

 private:
  OwnedVariant Item(Arguments& arguments);
  OwnedVariant Contents(Arguments& arguments);
  OwnedVariant Lock(Arguments& arguments);
  OwnedVariant Unlock(Arguments& arguments);
};

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SCRIPT_STATE_OBJECTS_H_
