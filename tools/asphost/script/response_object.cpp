#include "tools/asphost/script/response_object.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace oxaqrycln::asphost {
namespace {

constexpr std::size_t kLongestAnswer = 256 << 20;
constexpr std::size_t kMostHeaders = 100;

std::string HeaderText(const std::wstring& text) {
  std::string bytes = ToBytes(text, CP_UTF8);
  if (!IsHeaderText(bytes)) throw ScriptError{kIllegalCall, L"A header must not hold control characters"};
  return bytes;
}

// A cookie of the answer: Response.Cookies(NAME) = VALUE, or one of its properties.
class CookieObject : public PageObject<CookieObject> {
 public:
  CookieObject(std::shared_ptr<PageRun> run, std::shared_ptr<Cookie> cookie)
      : PageObject(std::move(run)), cookie_(std::move(cookie)) {}

  static std::span<const Member<CookieObject>> Members() {
    static constexpr std::array<Member<CookieObject>, 6> kMembers = {{
        {L"Value", &CookieObject::Value},
        {L"Path", &CookieObject::Path},
        {L"Domain", &CookieObject::Domain},
        {L"Expires", &CookieObject::Expires},
        {L"Secure", &CookieObject::Secure},
        {L"HttpOnly", &CookieObject::HttpOnly},
    }};
    return kMembers;
  }

 private:
  OwnedVariant Value(Arguments& arguments) {
    if (!arguments.IsAssignment()) return TextValue(run().Wide(cookie_->value));
    cookie_->value = run().Bytes(TextOf(arguments.assigned()));
    return {};
  }
  OwnedVariant Path(Arguments& arguments) { return SetText(cookie_->path, arguments); }
  OwnedVariant Domain(Arguments& arguments) { return SetText(cookie_->domain, arguments); }
  OwnedVariant Secure(Arguments& arguments) { return SetFlag(cookie_->isSecure, arguments); }
  OwnedVariant HttpOnly(Arguments& arguments) { return SetFlag(cookie_->isHttpOnly, arguments); }

  // A date is taken as the time of day in Greenwich.
  OwnedVariant Expires(Arguments& arguments) {
    SYSTEMTIME time{};
    if (VariantTimeToSystemTime(DateOf(Assigned(arguments)), &time) == 0)
      throw ScriptError{kIllegalCall, L"The date is not valid"};
    constexpr std::array<const char*, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::array<char, 64> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "%s, %02u %s %04u %02u:%02u:%02u GMT", kDays[time.wDayOfWeek],
                      time.wDay, kMonths[time.wMonth - 1U], time.wYear, time.wHour, time.wMinute, time.wSecond);
    cookie_->expires.assign(text.data(), static_cast<std::size_t>(length));
    return {};
  }

  static const VARIANT& Assigned(Arguments& arguments) {
    if (!arguments.IsAssignment()) throw ScriptError{kNotSupported, L"The property can only be assigned"};
    return arguments.assigned();
  }
  static OwnedVariant SetText(std::string& property, Arguments& arguments) {
    const std::string text = HeaderText(TextOf(Assigned(arguments)));
    if (text.find(';') != std::string::npos) throw ScriptError{kIllegalCall, L"A cookie must not hold \";\""};
    property = text;
    return {};
  }
  static OwnedVariant SetFlag(bool& property, Arguments& arguments) {
    property = BooleanOf(Assigned(arguments));
    return {};
  }

  const std::shared_ptr<Cookie> cookie_;
};

}  // namespace

std::span<const Member<ResponseObject>> ResponseObject::Members() {
  static constexpr std::array<Member<ResponseObject>, 16> kMembers = {{
      {L"Write", &ResponseObject::Write},
      {L"WriteBlock", &ResponseObject::WriteBlock},
      {L"BinaryWrite", &ResponseObject::BinaryWrite},
      {L"Redirect", &ResponseObject::Redirect},
      {L"End", &ResponseObject::End},
      {L"Clear", &ResponseObject::Clear},
      {L"AddHeader", &ResponseObject::AddHeader},
      {L"Status", &ResponseObject::Status},
      {L"ContentType", &ResponseObject::ContentType},
      {L"Charset", &ResponseObject::Charset},
      {L"CodePage", &ResponseObject::CodePage},
      {L"CacheControl", &ResponseObject::CacheControl},
      {L"Expires", &ResponseObject::Expires},
      {L"Cookies", &ResponseObject::Cookies},
      {L"Buffer", &ResponseObject::Ignored},
      {L"Flush", &ResponseObject::Ignored},
  }};
  return kMembers;
}

void ResponseObject::Append(std::string_view bytes) {
  if (run().answer.body.size() + bytes.size() > kLongestAnswer)
    throw ScriptError{kIllegalCall, L"The answer is too long"};
  run().answer.body += bytes;
}

OwnedVariant ResponseObject::Write(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  Append(run().Bytes(arguments.Text(0)));
  return {};
}

// A text of the page, which the script names by its number.
OwnedVariant ResponseObject::WriteBlock(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  const auto number = static_cast<std::size_t>(arguments.Number(0));
  if (number >= run().script.blocks().size()) throw ScriptError{kIllegalCall, L"The page has no such text"};
  const std::string& text = run().script.blocks()[number];
  Append(run().codePage == run().script.codePage() ? text : run().Bytes(ToWide(text, run().script.codePage())));
  return {};
}

OwnedVariant ResponseObject::BinaryWrite(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  Append(BytesOf(arguments.At(0)));
  return {};
}

OwnedVariant ResponseObject::Redirect(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  SetHeader("Location", HeaderText(arguments.Text(0)));
  run().answer.status = 302;
  run().answer.body.clear();
  run().Stop();
}

OwnedVariant ResponseObject::End(Arguments&) { run().Stop(); }

OwnedVariant ResponseObject::Clear(Arguments&) {
  run().answer.body.clear();
  return {};
}

void ResponseObject::SetHeader(const std::string& name, const std::string& value) {
  Headers& headers = run().answer.headers;
  std::erase_if(headers, [&](const auto& header) { return AsciiLowerCase(header.first) == AsciiLowerCase(name); });
  headers.emplace_back(name, value);
}

OwnedVariant ResponseObject::AddHeader(Arguments& arguments) {
  arguments.RequireCount(2, 2);
  const std::string name = HeaderText(arguments.Text(0));
  if (!IsToken(name)) throw ScriptError{kIllegalCall, L"The name of a header is not valid"};
  if (run().answer.headers.size() >= kMostHeaders) throw ScriptError{kIllegalCall, L"There are too many headers"};
  run().answer.headers.emplace_back(name, HeaderText(arguments.Text(1)));
  return {};
}

// "404 Not Found": only the number counts.
OwnedVariant ResponseObject::Status(Arguments& arguments) {
  if (!arguments.IsAssignment()) return TextValue(std::to_wstring(run().answer.status));
  const std::string text = HeaderText(TextOf(arguments.assigned()));
  int status = 0;
  std::from_chars(text.data(), text.data() + text.size(), status);
  if (status < 200 || status > 599) throw ScriptError{kIllegalCall, L"The status is not valid"};
  run().answer.status = status;
  return {};
}

OwnedVariant ResponseObject::ContentType(Arguments& arguments) {
  if (!arguments.IsAssignment()) return TextValue(ToWide(run().answer.contentType, CP_UTF8));
  run().answer.contentType = HeaderText(TextOf(arguments.assigned()));
  return {};
}

OwnedVariant ResponseObject::Charset(Arguments& arguments) {
  if (!arguments.IsAssignment()) return TextValue(ToWide(run().charset, CP_UTF8));
  run().charset = HeaderText(TextOf(arguments.assigned()));
  return {};
}

OwnedVariant ResponseObject::CodePage(Arguments& arguments) {
  if (!arguments.IsAssignment()) return NumberValue(static_cast<long>(run().codePage));
  const long number = NumberOf(arguments.assigned());
  if (!IsCodePage(number)) throw ScriptError{kIllegalCall, L"The code page must be 1252 or 65001"};
  run().codePage = static_cast<unsigned>(number);
  return {};
}

OwnedVariant ResponseObject::CacheControl(Arguments& arguments) {
  if (!arguments.IsAssignment()) throw ScriptError{kNotSupported, L"The property can only be assigned"};
  SetHeader("Cache-Control", HeaderText(TextOf(arguments.assigned())));
  return {};
}

// In minutes; 0 and less mean that the answer must not be kept.
OwnedVariant ResponseObject::Expires(Arguments& arguments) {
  if (!arguments.IsAssignment()) throw ScriptError{kNotSupported, L"The property can only be assigned"};
  const long minutes = NumberOf(arguments.assigned());
  SetHeader("Cache-Control", minutes <= 0 ? "no-store" : "private, max-age=" + std::to_string(minutes * 60LL));
  return {};
}

OwnedVariant ResponseObject::Cookies(Arguments& arguments) {
  arguments.RequireCount(1, 1);
  const std::string name = HeaderText(arguments.Text(0));
  if (!IsToken(name) || IsSameName(arguments.Text(0), L"ASPSESSIONID")) {
    throw ScriptError{kIllegalCall, L"The name of a cookie is not valid"};
  }
  auto& cookies = run().newCookies;
  const auto found = std::ranges::find(cookies, name, [](const auto& cookie) { return cookie->name; });
  const std::shared_ptr<Cookie> cookie = found != cookies.end() ? *found : std::make_shared<Cookie>();
  if (found == cookies.end()) {
    if (cookies.size() >= kMostHeaders) throw ScriptError{kIllegalCall, L"There are too many cookies"};
    cookie->name = name;
    cookies.push_back(cookie);
  }
  if (!arguments.IsAssignment()) return ObjectValue(MakeObject<CookieObject>(sharedRun(), cookie).get());
  cookie->value = run().Bytes(TextOf(arguments.assigned()));
  return {};
}

// The answer is always kept until the page ends.
OwnedVariant ResponseObject::Ignored(Arguments& arguments) {
  return arguments.IsAssignment() ? OwnedVariant() : BooleanValue(true);
}

}  // namespace oxaqrycln::asphost
