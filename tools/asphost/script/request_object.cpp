#include "tools/asphost/script/request_object.h"

#include <algorithm>
#include <array>
#include <optional>

namespace oxaqrycln::asphost {
namespace {

// The fields of a query, form or cookies.
class FieldsObject : public PageObject<FieldsObject> {
 public:
  FieldsObject(std::shared_ptr<PageRun> run, const Fields& fields, const std::string& wholeText)
      : PageObject(std::move(run)), fields_(fields), wholeText_(wholeText) {}

  static std::span<const Member<FieldsObject>> Members() {
    static constexpr std::array<Member<FieldsObject>, 2> kMembers = {
        {{L"Item", &FieldsObject::Item}, {L"Count", &FieldsObject::Count}}};
    return kMembers;
  }

 private:
  OwnedVariant Item(Arguments& arguments) {
    arguments.RefuseAssignment();
    arguments.RequireCount(0, 1);
    if (arguments.count() == 0) return TextValue(run().Wide(wholeText_));
    const auto value = ValueOf(fields_, run().Bytes(arguments.Text(0)));
    return value ? TextValue(run().Wide(*value)) : OwnedVariant();
  }

  OwnedVariant Count(Arguments&) { return NumberValue(static_cast<long>(Keys().size())); }

  std::vector<std::wstring> Keys() override {
    std::vector<std::wstring> keys;
    for (const auto& [name, value] : fields_) {
      std::wstring key = run().Wide(name);
      const auto isSame = [&](const std::wstring& known) { return IsSameName(known, key); };
      if (std::ranges::none_of(keys, isSame)) keys.push_back(std::move(key));
    }
    return keys;
  }

  const Fields& fields_;
  const std::string& wholeText_;
};

std::optional<std::string> HeaderOf(const WebRequest& request, const std::string& name) {
  for (const auto& [headerName, value] : request.headers) {
    std::string variable = "http_" + AsciiLowerCase(headerName);
    std::ranges::replace(variable, '-', '_');
    if (variable == name) return value;
  }
  return std::nullopt;
}

std::string HostName(const WebRequest& request) {
  const std::string host = HeaderOf(request, "http_host").value_or("127.0.0.1");
  return host.substr(0, host.rfind(':'));
}

std::optional<std::string> ServerVariable(const PageRun& run, const std::string& name) {
  const WebRequest& request = run.request;
  if (name == "request_method") return request.method;
  if (name == "script_name" || name == "path_info" || name == "url") return "/" + run.sitePath;
  if (name == "path_translated") return ToBytes(run.site.DiskPath(run.sitePath), run.codePage);
  if (name == "query_string") return request.queryString;
  if (name == "content_type") return request.contentType;
  if (name == "content_length") return std::to_string(request.body.size());
  if (name == "remote_addr" || name == "remote_host") return request.remoteAddress;
  if (name == "local_addr") return "127.0.0.1";
  if (name == "server_name") return HostName(request);
  if (name == "server_port") return std::to_string(request.serverPort);
  if (name == "server_protocol") return "HTTP/1.1";
  if (name == "server_software") return "asphost";
  if (name == "https") return "off";
  return HeaderOf(request, name);
}

}  // namespace

std::span<const Member<RequestObject>> RequestObject::Members() {
  static constexpr std::array<Member<RequestObject>, 7> kMembers = {{
      {L"Item", &RequestObject::Item},
      {L"QueryString", &RequestObject::QueryString},
      {L"Form", &RequestObject::Form},
      {L"Cookies", &RequestObject::Cookies},
      {L"ServerVariables", &RequestObject::ServerVariables},
      {L"TotalBytes", &RequestObject::TotalBytes},
      {L"BinaryRead", &RequestObject::BinaryRead},
  }};
  return kMembers;
}

OwnedVariant RequestObject::Item(Arguments& arguments) {
  arguments.RefuseAssignment();
  arguments.RequireCount(1, 1);
  const std::string name = run().Bytes(arguments.Text(0));
  for (const Fields* fields : {&run().query, &run().form, &run().cookies}) {
    if (const auto value = ValueOf(*fields, name)) return TextValue(run().Wide(*value));
  }
  return ServerVariables(arguments);
}

OwnedVariant RequestObject::FieldOf(const Fields& fields, const std::string& wholeText, Arguments& arguments) {
  arguments.RefuseAssignment();
  arguments.RequireCount(0, 1);
  if (arguments.count() == 0) return ObjectValue(MakeObject<FieldsObject>(sharedRun(), fields, wholeText).get());
  const auto value = ValueOf(fields, run().Bytes(arguments.Text(0)));
  return value ? TextValue(run().Wide(*value)) : OwnedVariant();
}

OwnedVariant RequestObject::QueryString(Arguments& arguments) {
  return FieldOf(run().query, run().request.queryString, arguments);
}

OwnedVariant RequestObject::Form(Arguments& arguments) { return FieldOf(run().form, run().request.body, arguments); }

OwnedVariant RequestObject::Cookies(Arguments& arguments) {
  return FieldOf(run().cookies, run().request.cookies, arguments);
}

OwnedVariant RequestObject::ServerVariables(Arguments& arguments) {
  arguments.RefuseAssignment();
  arguments.RequireCount(1, 1);
  const auto value = ServerVariable(run(), AsciiLowerCase(run().Bytes(arguments.Text(0))));
  return value ? TextValue(run().Wide(*value)) : OwnedVariant();
}

OwnedVariant RequestObject::TotalBytes(Arguments& arguments) {
  arguments.RefuseAssignment();
  return NumberValue(static_cast<long>(run().request.body.size()));
}

// The next bytes of the body, at most as many as asked for. The count, passed by reference, receives their number.
OwnedVariant RequestObject::BinaryRead(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  const long wanted = arguments.Number(0);
  if (wanted < 0) throw ScriptError{kIllegalCall, L"A number of bytes is needed"};
  const std::string_view rest = std::string_view(run().request.body).substr(run().bytesRead);
  const std::string_view bytes = rest.substr(0, static_cast<std::size_t>(wanted));
  run().bytesRead += bytes.size();
  const VARIANT& count = arguments.At(0);
  const auto number = static_cast<long>(bytes.size());
  if (count.vt == (VT_BYREF | VT_I4)) *count.plVal = number;
  if (count.vt == (VT_BYREF | VT_I2) && number <= SHRT_MAX) *count.piVal = static_cast<SHORT>(number);
  if (count.vt == (VT_BYREF | VT_VARIANT)) {
    VariantClear(count.pvarVal);
    *count.pvarVal = NumberValue(number).Release();
  }
  return BytesValue(bytes);
}

}  // namespace oxaqrycln::asphost
