#include "tools/asphost/server/http_connection.h"

#include <algorithm>
#include <array>
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
constexpr std::chrono::seconds kFarewell{1};

std::string TextOf(beast::string_view text) { return {text.data(), text.size()}; }

// A page of another site could otherwise reach this one under its own name.
bool IsLoopbackName(std::string_view host) {
  const std::string name = AsciiLowerCase(host.substr(0, host.rfind(':')));
  return name == "127.0.0.1" || name == "localhost";
}

class Connection {
 public:
  Connection(tcp::socket socket, const ConnectionLimits& limits)
      : socket_(std::move(socket)), deadline_(std::chrono::steady_clock::now() + limits.timeOut) {
    parser_.header_limit(kLongestHeader);
    parser_.body_limit(limits.longestBody);
    socket_.set_option(tcp::no_delay(true));
    LimitWaiting(limits.timeOut);
  }

  void Serve(const AnswerFunction& answer) {
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
    socket_.shutdown(tcp::socket::shutdown_send, error_);
    LimitWaiting(kFarewell);
    Discard();
  }

 private:
  // Calls that block are much cheaper under Wine than overlapped ones, and time out by an option of the socket.
  void LimitWaiting(std::chrono::milliseconds timeOut) {
    const auto milliseconds = static_cast<DWORD>(timeOut.count());
    for (const int option : {SO_RCVTIMEO, SO_SNDTIMEO}) {
      setsockopt(socket_.native_handle(), SOL_SOCKET, option, reinterpret_cast<const char*>(&milliseconds),
                 sizeof milliseconds);
    }
  }

  void Receive() {
    ReceiveUntil([this] { return parser_.is_header_done(); });
    if (error_) return;
    if (AsciiLowerCase(TextOf(parser_.get()[http::field::expect])) == "100-continue") {
      const http::response<http::empty_body> goOn(http::status::continue_, parser_.get().version());
      http::write(socket_, goOn, error_);
    }
    ReceiveUntil([this] { return parser_.is_done(); });
  }

  template <typename Condition>
  void ReceiveUntil(const Condition& isDone) {
    while (!error_ && !isDone()) {
      if (std::chrono::steady_clock::now() > deadline_) {
        error_ = beast::error::timeout;
      } else {
        http::read_some(socket_, buffer_, parser_, error_);
      }
    }
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
    request.remoteAddress = socket_.remote_endpoint(error).address().to_string();
    request.serverPort = socket_.local_endpoint(error).port();
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
    http::write(socket_, response, error_);
  }

  // Reads what still comes, a bounded part of it.
  void Discard() {
    constexpr int kMostReads = 64;
    std::array<char, 16384> discarded;
    for (int i = 0; i < kMostReads && !error_; ++i) socket_.read_some(boost::asio::buffer(discarded), error_);
  }

  tcp::socket socket_;
  const std::chrono::steady_clock::time_point deadline_;
  beast::flat_buffer buffer_;
  http::request_parser<http::string_body> parser_;
  beast::error_code error_;
};

}  // namespace

void ServeConnection(tcp::socket socket, const ConnectionLimits& limits, const AnswerFunction& answer) {
  Connection(std::move(socket), limits).Serve(answer);
}

}  // namespace oxaqrycln::asphost
