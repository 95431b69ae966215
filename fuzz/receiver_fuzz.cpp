// The receiver of answers, over a real connection. Input: sizes of packets, a line end, what the peer sends.
#include <chrono>

#include "fuzz/input.h"
#include "fuzz/loopback_peer.h"
#include "transport/apartment.h"
#include "values/variant.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

// The expected outcome of the bytes of a peer, however they were cut.
struct Answer {
  std::string_view text;
  bool ready = false;
};

Answer Read(std::string_view bytes) {
  constexpr std::string_view kWord = "TotalBytes:";
  constexpr std::size_t kLongestHeader = 32;
  if (!kWord.starts_with(bytes.substr(0, kWord.size()))) return {bytes, true};
  const std::size_t lineEnd = bytes.find("\r\n");
  if (lineEnd > kLongestHeader) return {};  // or there is none
  std::int32_t count = -1;
  ErrorOf([&] { count = TextToLong(bytes.substr(kWord.size(), lineEnd - kWord.size())); });
  if (count < 0) return {};
  const std::string_view body = bytes.substr(lineEnd + 2);
  return {body, body.size() >= static_cast<std::size_t>(count)};
}

class Receiver {
 public:
  // All requests use one slot, so state that one leaves would affect the next.
  Receiver() : slot_(controls_.GetFreeControl()) { controls_.ReleaseTimer().Enable(false); }

  void Take(std::string_view bytes, std::string_view sizes) {
    controls_.Slot(slot_).StartReceiving(std::nullopt);
    controls_.BlnWinsockError(slot_, false);
    SocketControl& socket = controls_.Winsock(slot_);
    socket.SetRemote("127.0.0.1", peer_.port(), std::nullopt);
    socket.Connect();
    peer_.Accept();
    if (socket.State() != SocketState::Connected) WaitForEvent();
    std::size_t sent = 0;
    for (const std::string_view piece : Pieces(bytes, sizes)) {
      if (controls_.BlnRequestReady(slot_)) break;
      peer_.Send(piece);
      WaitForEvent();
      sent += piece.size();
      Compare(Read(bytes.substr(0, sent)));
    }
    End();
    socket.Close();
  }

 private:
  // Waits for the one event that must come.
  void WaitForEvent() { apartment_.loop.RunUntil(apartment_.clock.SteadyNow() + std::chrono::seconds(10)); }

  void Compare(const Answer& expected) {
    Require(controls_.BlnRequestReady(slot_) == expected.ready, "an answer is complete with its announced bytes");
    Require(controls_.StrResponse(slot_) == expected.text, "the answer consists of the bytes after the header");
    Require(!controls_.BlnWinsockError(slot_), "bytes are not an error of the socket");
  }

  void End() {
    const bool ready = controls_.BlnRequestReady(slot_);
    peer_.EndSending();
    if (!ready) WaitForEvent();
    peer_.Drop();
    Require(controls_.BlnWinsockError(slot_) != ready, "a peer that ends too early is an error");
    Require(ready || controls_.StrWinsockError(slot_).starts_with("10054 - "),
            "its number is that of a connection reset");
  }

  Apartment apartment_;
  frmControls& controls_ = apartment_.controls;
  LoopbackPeer peer_;
  std::int32_t slot_;
};

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view bytes) {
  static Receiver receiver;
  const std::string_view sizes = CutOff(bytes, "\n");
  receiver.Take(bytes, sizes);
}
