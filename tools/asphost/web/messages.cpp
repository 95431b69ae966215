#include "tools/asphost/web/messages.h"

#include <algorithm>
#include <string_view>

#include "tools/asphost/web/encoding.h"

namespace oxaqrycln::asphost {

bool IsHeaderText(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x20 && c != 0x7f; });
}

bool IsToken(std::string_view text) {
  const auto isTokenCharacter = [](char c) {
    return c > 0x20 && c < 0x7f && std::string_view("()<>@,;:\\\"/[]?={}").find(c) == std::string_view::npos;
  };
  return !text.empty() && std::ranges::all_of(text, isTokenCharacter);
}

WebAnswer ErrorPage(int status, std::string_view title, std::string_view detail) {
  WebAnswer answer;
  answer.status = status;
  answer.contentType = "text/html; charset=utf-8";
  const std::string heading = HtmlEncode(title);
  answer.body = "<!DOCTYPE html>\n<html><head><title>" + heading + "</title></head>\n<body><h1>" + heading +
                "</h1>\n<p>" + HtmlEncode(detail) + "</p></body></html>\n";
  return answer;
}

std::string HeaderOf(const Cookie& cookie) {
  std::string header = cookie.name + "=" + UrlEncode(cookie.value) + "; path=" + cookie.path;
  if (!cookie.domain.empty()) header += "; domain=" + cookie.domain;
  if (!cookie.expires.empty()) header += "; expires=" + cookie.expires;
  if (cookie.isSecure) header += "; secure";
  if (cookie.isHttpOnly) header += "; HttpOnly";
  return header + "; SameSite=Lax";
}

}  // namespace oxaqrycln::asphost
