#include "tools/asphost/server/http_connection.h"

#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "tools/asphost/web/encoding.h"

namespace oxaqrycln::asphost {
namespace {

namespace beast = boost::beast;
namespace http = boost::beast::http;
using boost::asio::ip::tcp;

constexpr std::uint32_t kLongestHeader = 32 << 10;

std::string TextOf(beast::string_view text) { return {text.data(), text.size()}; }

// A page of another site could otherwise reach this one under its own name.
bool IsLoopbackName(std::string_view host) {
  const std::string name = AsciiLowerCase(host.substr(0, host.rfind(':')));
  return name == "127.0.0.1" || name == "localhost";
}

class Connection {
 public:
  Connection(boost::asio::io_context& context, tcp::socket socket, const ConnectionLimits& limits)
      : context_(context), stream_(std::move(socket)), limits_(limits) {
    parser_.header_limit(kLongestHeader);
    parser_.body_limit(limits.longestBody);
  }

  void Serve(const AnswerFunction& answer) {
    stream_.socket().set_option(tcp::no_delay(true));
    Receive();
    if (error_ == http::error::end_of_stream) return;
    if (error_ == http::error::body_limit) {
      Send(ErrorPage(413, "Too large", "The request is larger than this server takes."));
    } else if (error_) {
      Send(ErrorPage(400, "Bad request", "The request could not be read."));
    } else {
      Send(AnswerTo(answer));
    }
    // Closing while the visitor still sends would take the answer from him.
    stream_.socket().shutdown(tcp::socket::shutdown_send, error_);
    Discard();
  }

 private:
  // Runs one operation of the stream until it is done or its time is up.
  template <typename Start>
  void Await(const Start& start) {
    stream_.expires_after(limits_.timeOut);
    start([this](beast::error_code error, std::size_t) { error_ = error; });
    context_.restart();
    context_.run();
  }

  void Receive() {
    Await([this](auto done) { http::async_read_header(stream_, buffer_, parser_, done); });
    if (error_) return;
    if (AsciiLowerCase(TextOf(parser_.get()[http::field::expect])) == "100-continue") {
      const http::response<http::empty_body> goOn(http::status::continue_, parser_.get().version());
      http::write(stream_, goOn, error_);
      if (error_) return;
    }
    Await([this](auto done) { http::async_read(stream_, buffer_, parser_, done); });
  }

  WebAnswer AnswerTo(const AnswerFunction& answer) {
    const auto& given = parser_.get();
    if (given.method() != http::verb::get && given.method() != http::verb::post && given.method() != http::verb::head) {
      return ErrorPage(405, "Not allowed", "Only GET, HEAD and POST are answered.");
    }
    if (!IsLoopbackName(TextOf(given[http::field::host]))) {
      return ErrorPage(400, "Bad request", "The name of the host must be 127.0.0.1 or localhost.");
    }
    return answer(Convert());
  }

  WebRequest Convert() {
    auto& given = parser_.get();
    WebRequest request;
    request.method = TextOf(given.method_string());
    const std::string target = TextOf(given.target());
    const std::size_t question = std::min(target.find('?'), target.size());
    request.path = PathDecode(std::string_view(target).substr(0, question));
    request.queryString = target.substr(std::min(question + 1, target.size()));
    request.contentType = TextOf(given[http::field::content_type]);
    request.cookies = TextOf(given[http::field::cookie]);
    for (const auto& field : given) request.headers.emplace_back(TextOf(field.name_string()), TextOf(field.value()));
    request.body = std::move(given.body());
    beast::error_code error;
    request.remoteAddress = stream_.socket().remote_endpoint(error).address().to_string();
    request.serverPort = stream_.socket().local_endpoint(error).port();
    return request;
  }

  void Send(WebAnswer answer) {
    const bool isHead = parser_.get().method() == http::verb::head;
    http::response<http::string_body> response(static_cast<http::status>(answer.status), 11);
    response.set(http::field::content_type, answer.contentType);
    response.set("X-Content-Type-Options", "nosniff");
    for (const auto& [name, value] : answer.headers) response.insert(name, value);
    response.content_length(answer.body.size());
    response.keep_alive(false);
    if (!isHead) response.body() = std::move(answer.body);
    Await([&](auto done) { http::async_write(stream_, response, done); });
  }

  // Reads what still comes, a bounded part of it.
  void Discard() {
    constexpr int kMostReads = 64;
    for (int i = 0; i < kMostReads && !error_; ++i) {
      Await([this](auto done) { stream_.async_read_some(boost::asio::buffer(discarded_), done); });
    }
  }

  boost::asio::io_context& context_;
  beast::tcp_stream stream_;
  const ConnectionLimits& limits_;
  beast::flat_buffer buffer_;
  http::request_parser<http::string_body> parser_;
  beast::error_code error_;
  std::array<char, 16384> discarded_;
};

}  // namespace

void ServeConnection(boost::asio::io_context& context, tcp::socket socket, const ConnectionLimits& limits,
                     const AnswerFunction& answer) {
  Connection(context, std::move(socket), limits).Serve(answer);
}

}  // namespace oxaqrycln::asphost
