#include "transport/request_text.h"

#include <cstddef>

#include "support/text_helpers.h"
#include "support/trap.h"

namespace oxaqrycln {
namespace {

constexpr std::size_t kUsualLength = 256;  // of a command part, reserved at once

}  // namespace

std::string BuildRequest(std::span<const Variant> elements, const SessionLog& log) {
  return Trap(log, "BuildRequest", std::string(), [&](std::string& result) {
    std::string scratch;
    result.reserve(kUsualLength);
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
    const std::string password = Trap(log, "Encode", std::string(), [&](std::string& encoded) {
      encoded = Encode(own ? server.password : account.password);
    });
    result = "^" + account.sessionId + "^,^" + user + "^,^" + password + "^";
  });
}

std::string GetRequestField(std::string_view text, std::int32_t number) {
  constexpr std::string_view kBetween = "^,^";
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t start = 1;  // after the opening caret
  // A caret at the very end closes the last field.
  const auto fieldEnd = [&] {
    const std::size_t end = text.find(kBetween, start);
    return end == kNone && text.ends_with('^') && text.size() > start ? text.size() - 1 : end;
  };
  std::size_t end = fieldEnd();
  for (std::int32_t i = 1; i < number && end != kNone; ++i) {
    start = end + kBetween.size();
    end = fieldEnd();
  }
  return std::string(end == kNone ? "{Err}" : text.substr(start, end - start));
}

}  // namespace oxaqrycln
