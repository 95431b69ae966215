// http_connection.h - one request over one connection: reads it, has it answered, sends the answer.
// Everything that the HTTP library is used for, but listening.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_SERVER_HTTP_CONNECTION_H_
#define OXAQRYCLN_TOOLS_ASPHOST_SERVER_HTTP_CONNECTION_H_

#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <cstddef>
#include <functional>

#include "tools/asphost/web/messages.h"

namespace oxaqrycln::asphost {

struct ConnectionLimits {
  std::size_t longestBody = 32 << 20;
  std::chrono::seconds timeOut{30};  // to receive the whole request; also the longest wait for the next byte
};

using AnswerFunction = std::function<WebAnswer(const WebRequest& request)>;

// Closes the connection. One that fails is closed without a word. Throws what answer throws.
void ServeConnection(boost::asio::ip::tcp::socket socket, const ConnectionLimits& limits, const AnswerFunction& answer);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_SERVER_HTTP_CONNECTION_H_
