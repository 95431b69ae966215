// messages.h - a request and its answer as pages see them, without anything of the HTTP library.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_WEB_MESSAGES_H_
#define OXAQRYCLN_TOOLS_ASPHOST_WEB_MESSAGES_H_

#include <string>
#include <utility>
#include <vector>

namespace oxaqrycln::asphost {

using Headers = std::vector<std::pair<std::string, std::string>>;

struct WebRequest {
  std::string method;
  std::string path;         // as it was asked for, percent signs decoded
  std::string queryString;  // without "?", not decoded
  std::string contentType;
  std::string cookies;
  Headers headers;
  std::string body;
  std::string remoteAddress;
  int serverPort = 0;
};

struct WebAnswer {
  int status = 200;
  std::string contentType = "text/html";
  Headers headers;
  std::string body;
};

// Whether the text may stand in a header: no control character, no line end.
bool IsHeaderText(std::string_view text);
// Whether the text may be the name of a header or cookie.
bool IsToken(std::string_view text);

// A page that shows a status and what went wrong; all texts are encoded.
WebAnswer ErrorPage(int status, std::string_view title, std::string_view detail);

// A cookie that an answer sets.
struct Cookie {
  std::string name;
  std::string value;  // any bytes; they are encoded
  std::string path = "/";
  std::string domain;
  std::string expires;  // a date of HTTP, or "" for a cookie of the session
  bool isSecure = false;
  bool isHttpOnly = false;
};
// The value of its Set-Cookie header. The domain, path and date must be header texts without ";".
std::string HeaderOf(const Cookie& cookie);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_WEB_MESSAGES_H_
