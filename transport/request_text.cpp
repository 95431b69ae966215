#include "transport/request_text.h"

#include "component/text_helpers.h"
#include "component/trap.h"

namespace oxaqrycln {

std::string BuildRequest(std::span<const Variant> elements, const SessionLog& log) {
  return Trap(log, "BuildRequest", std::string(), [&](std::string& result) {
    std::string scratch;
    for (const Variant& element : elements) {
      const std::string_view text = element.TextView(scratch);
      if (!result.empty()) result += ',';
      result += '^';
      result += text;
      result += '^';
    }
  });
}

std::string BuildRequestPre(std::int32_t serverNumber, ServerTable& servers, const Account& account,
                            const SessionLog& log) {
  return Trap(log, "BuildRequestPre", std::string(), [&](std::string& result) {
    const ServerEntry& server = servers.At(serverNumber);
    const bool own = !server.user.empty();
    const std::string& user = own ? server.user : account.user;
    const std::string password = Encode(own ? server.password : account.password);
    result = "^" + account.sessionId + "^,^" + user + "^,^" + password + "^";
  });
}

std::string GetRequestField(std::string_view text, std::int32_t number) {
  constexpr std::string_view kNone = "{Err}";
  constexpr std::string_view kBetween = "^,^";
  const std::string closed = std::string(text) + ",^";
  std::size_t start = 1;  // behind the opening caret
  std::size_t end = closed.find(kBetween, start);
  for (std::int32_t i = 1; i < number && end != std::string::npos; ++i) {
    start = end + kBetween.size();
    end = closed.find(kBetween, start);
  }
  if (end == std::string::npos) return std::string(kNone);
  return closed.substr(start, end - start);
}

}  // namespace oxaqrycln
