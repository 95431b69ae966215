#include "tools/asphost/script/server_object.h"

#include <array>

#include "tools/asphost/pages/site_path.h"

namespace oxaqrycln::asphost {
namespace {

constexpr std::size_t kMostObjects = 1000;
constexpr long kLongestTimeOut = 24 * 60 * 60;

}  // namespace

std::span<const Member<ServerObject>> ServerObject::Members() {
  static constexpr std::array<Member<ServerObject>, 5> kMembers = {{
      {L"CreateObject", &ServerObject::CreateObject},
      {L"HTMLEncode", &ServerObject::HtmlEncodeText},
      {L"URLEncode", &ServerObject::UrlEncodeText},
      {L"MapPath", &ServerObject::MapPath},
      {L"ScriptTimeout", &ServerObject::ScriptTimeout},
  }};
  return kMembers;
}

OwnedVariant ServerObject::CreateObject(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  if (run().createdObjects.size() >= kMostObjects)
    throw ScriptError{kCannotCreate, L"The page has made too many objects"};
  const std::wstring name = arguments.Text(0);
  ComReference<IDispatch> object;
  const HRESULT result = run().classes.Create(name, IID_IDispatch, object.ReceiveVoid());
  if (FAILED(result)) {
    std::array<wchar_t, 16> code{};
    std::swprintf(code.data(), code.size(), L"%08lX", static_cast<unsigned long>(result));
    throw ScriptError{kCannotCreate, L"The object \"" + name + L"\" cannot be created (" + code.data() + L")"};
  }
  CallIfPresent(*object.get(), L"OnStartPage", &context_);
  OwnedVariant value = ObjectValue(object.get());
  run().createdObjects.push_back(std::move(object));
  return value;
}

OwnedVariant ServerObject::HtmlEncodeText(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  return TextValue(HtmlEncode(arguments.Text(0)));
}

OwnedVariant ServerObject::UrlEncodeText(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  return TextValue(run().Wide(UrlEncode(run().Bytes(arguments.Text(0)))));
}

OwnedVariant ServerObject::MapPath(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  const auto path = ResolveSitePath(run().sitePath, ToBytes(arguments.Text(0), CP_UTF8));
  if (!path) throw ScriptError{kIllegalCall, L"The path leaves the site"};
  return TextValue(path->empty() ? run().site.options.folder : run().site.DiskPath(*path));
}

OwnedVariant ServerObject::ScriptTimeout(Arguments& arguments) {
  if (!arguments.IsAssignment()) return NumberValue(static_cast<long>(run().timeOut().count()));
  const long seconds = NumberOf(arguments.assigned());
  if (seconds < 1 || seconds > kLongestTimeOut) throw ScriptError{kIllegalCall, L"The time-out is not valid"};
  run().SetTimeOut(std::chrono::seconds(seconds));
  return {};
}

}  // namespace oxaqrycln::asphost
