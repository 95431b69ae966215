#include "tools/asphost/script/page_object.h"

#include "tools/asphost/script/request_object.h"
#include "tools/asphost/script/response_object.h"
#include "tools/asphost/script/server_object.h"
#include "tools/asphost/script/state_objects.h"

namespace oxaqrycln::asphost {
namespace {

// In the order of the objects. The positions are the numbers of the members.
constexpr std::array<std::wstring_view, 5> kNames = {L"Request", L"Response", L"Server", L"Session", L"Application"};

}  // namespace

GlobalObject::GlobalObject(std::shared_ptr<PageRun> run)
    : objects_{MakeObject<RequestObject>(run), MakeObject<ResponseObject>(run), MakeObject<ServerObject>(run, *this),
               MakeObject<SessionObject>(run), MakeObject<ApplicationObject>(run)} {}

DISPID GlobalObject::Find(std::wstring_view name) const {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (IsSameName(kNames[i], name)) return static_cast<DISPID>(i) + 1;  // 0 would be a default member
  }
  return DISPID_UNKNOWN;
}

OwnedVariant GlobalObject::Call(DISPID member, Arguments& arguments) {
  const auto position = static_cast<std::size_t>(member) - 1;
  if (position >= objects_.size()) throw ScriptError{kNotSupported, L"Object doesn't support this property or method"};
  ScriptObjectBase& object = *objects_[position].get();
  const bool isReading = arguments.count() == 0 && !arguments.IsAssignment();
  return isReading ? ObjectValue(&object) : object.CallDefault(arguments);
}

}  // namespace oxaqrycln::asphost
