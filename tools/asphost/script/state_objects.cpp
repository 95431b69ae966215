#include "tools/asphost/script/state_objects.h"

#include <array>

namespace oxaqrycln::asphost {
namespace {

constexpr long kMostMinutes = 24 * 60;

OwnedVariant SessionItem(PageRun& run, Arguments& arguments) {
  arguments.RequireCount(1, 1);
  ValueStore& values = run.Session().values;
  if (!arguments.IsAssignment()) return values.Get(arguments.Text(0));
  values.Set(arguments.Text(0), arguments.assigned());
  return {};
}

OwnedVariant ApplicationItem(PageRun& run, Arguments& arguments) {
  arguments.RequireCount(1, 1);
  const std::wstring name = arguments.Text(0);
  if (!arguments.IsAssignment()) return run.site.application.Get(name);
  run.site.application.Change(&run, run.deadline(),
                              [&](ValueStore& values) { values.Set(name, arguments.assigned()); });
  return {};
}

// Contents of Session or Application.
class ContentsObject : public PageObject<ContentsObject> {
 public:
  ContentsObject(std::shared_ptr<PageRun> run, bool isSession) : PageObject(std::move(run)), isSession_(isSession) {}

  static std::span<const Member<ContentsObject>> Members() {
    static constexpr std::array<Member<ContentsObject>, 4> kMembers = {{
        {L"Item", &ContentsObject::Item},
        {L"Count", &ContentsObject::Count},
        {L"Remove", &ContentsObject::Remove},
        {L"RemoveAll", &ContentsObject::RemoveAll},
    }};
    return kMembers;
  }

 private:
  OwnedVariant Item(Arguments& arguments) {
    return isSession_ ? SessionItem(run(), arguments) : ApplicationItem(run(), arguments);
  }
  OwnedVariant Count(Arguments&) { return NumberValue(static_cast<long>(Keys().size())); }
  OwnedVariant Remove(Arguments& arguments) {
    arguments.RequireCount(1, 1);
    const std::wstring name = arguments.Text(0);
    Change([&](ValueStore& values) { values.Remove(name); });
    return {};
  }
  OwnedVariant RemoveAll(Arguments&) {
    Change([](ValueStore& values) { values.RemoveAll(); });
    return {};
  }

  std::vector<std::wstring> Keys() override {
    return isSession_ ? run().Session().values.Names() : run().site.application.Names();
  }

  void Change(const std::function<void(ValueStore&)>& change) {
    if (isSession_) return change(run().Session().values);
    run().site.application.Change(&run(), run().deadline(), change);
  }

  const bool isSession_;
};

}  // namespace

std::span<const Member<SessionObject>> SessionObject::Members() {
  static constexpr std::array<Member<SessionObject>, 5> kMembers = {{
      {L"Item", &SessionObject::Item},
      {L"Contents", &SessionObject::Contents},
      {L"SessionID", &SessionObject::SessionId},
      {L"Timeout", &SessionObject::Timeout},
      {L"Abandon", &SessionObject::Abandon},
  }};
  return kMembers;
}

OwnedVariant SessionObject::Item(Arguments& arguments) { return SessionItem(run(), arguments); }

OwnedVariant SessionObject::Contents(Arguments& arguments) {
  if (arguments.count() == 0) return ObjectValue(MakeObject<ContentsObject>(sharedRun(), true).get());
  return SessionItem(run(), arguments);
}

OwnedVariant SessionObject::SessionId(Arguments& arguments) {
  arguments.RefuseAssignment();
  return TextValue(run().Session().publicId);
}

OwnedVariant SessionObject::Timeout(Arguments& arguments) {
  if (!arguments.IsAssignment()) return NumberValue(static_cast<long>(run().Session().timeOut.count()));
  const long minutes = NumberOf(arguments.assigned());
  if (minutes < 1 || minutes > kMostMinutes) throw ScriptError{kIllegalCall, L"The time-out is not valid"};
  run().SetSessionTimeOut(std::chrono::minutes(minutes));
  return {};
}

OwnedVariant SessionObject::Abandon(Arguments&) {
  run().EndSession();
  return {};
}

std::span<const Member<ApplicationObject>> ApplicationObject::Members() {
  static constexpr std::array<Member<ApplicationObject>, 4> kMembers = {{
      {L"Item", &ApplicationObject::Item},
      {L"Contents", &ApplicationObject::Contents},
      {L"Lock", &ApplicationObject::Lock},
      {L"Unlock", &ApplicationObject::Unlock},
  }};
  return kMembers;
}

OwnedVariant ApplicationObject::Item(Arguments& arguments) { return ApplicationItem(run(), arguments); }

OwnedVariant ApplicationObject::Contents(Arguments& arguments) {
  if (arguments.count() == 0) return ObjectValue(MakeObject<ContentsObject>(sharedRun(), false).get());
  return ApplicationItem(run(), arguments);
}

OwnedVariant ApplicationObject::Lock(Arguments&) {
  run().site.application.Lock(&run(), run().deadline());
  return {};
}

OwnedVariant ApplicationObject::Unlock(Arguments&) {
  run().site.application.Unlock(&run());
  return {};
}

}  // namespace oxaqrycln::asphost
