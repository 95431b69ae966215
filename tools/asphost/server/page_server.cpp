#include "tools/asphost/server/page_server.h"

#include <ole2.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace oxaqrycln::asphost {
namespace {

using boost::asio::ip::tcp;

constexpr int kMostWaiting = 200;

tcp::endpoint Loopback(int port) { return {boost::asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(port)}; }

class Apartment {
 public:
  Apartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~Apartment() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  const HRESULT result_;
};

}  // namespace

PageServer::PageServer(int port, const ConnectionLimits& limits, std::function<AnswerFunction()> makeAnswer)
    : acceptor_(context_), limits_(limits), makeAnswer_(std::move(makeAnswer)) {
  boost::system::error_code error;
  acceptor_.open(tcp::v4());
  // Without this, two servers could listen on one port.
  const BOOL yes = TRUE;
  setsockopt(acceptor_.native_handle(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
             sizeof yes);
  acceptor_.bind(Loopback(port), error);
  if (!error) acceptor_.listen(kMostWaiting, error);
  if (error) throw std::runtime_error("cannot listen on 127.0.0.1:" + std::to_string(port) + ": " + error.message());
}

void PageServer::Run(std::size_t threadCount) {
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < threadCount; ++i) threads.emplace_back([this] { ServeOnThread(); });
  for (std::thread& thread : threads) thread.join();
}

// The thread that waits for a visitor wakes up for a connection of our own.
void PageServer::Stop() {
  isStopping_ = true;
  boost::asio::io_context context;
  tcp::socket socket(context);
  boost::system::error_code error;
  socket.connect(acceptor_.local_endpoint(error), error);
}

void PageServer::ServeOnThread() {
  const Apartment apartment;
  const AnswerFunction answer = makeAnswer_();
  while (!isStopping_) {
    tcp::socket socket(context_);
    {
      const std::lock_guard lock(acceptorMutex_);
      boost::system::error_code error;
      if (isStopping_) return;
      acceptor_.accept(socket, error);
      if (error || isStopping_) continue;
    }
    try {
      ServeConnection(std::move(socket), limits_, answer);
    } catch (const std::exception&) {
      // Nobody is left to be told: the connection is closed.
    }
  }
}

}  // namespace oxaqrycln::asphost
