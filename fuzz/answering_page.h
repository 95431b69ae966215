// answering_page.h - a clsQuery that gets the same answer to every request, in a single thread.
#ifndef OXAQRYCLN_FUZZ_ANSWERING_PAGE_H_
#define OXAQRYCLN_FUZZ_ANSWERING_PAGE_H_

#include <string>

#include "component/clsQuery.h"
#include "fuzz/input.h"
#include "fuzz/loopback_peer.h"
#include "transport/apartment.h"

namespace oxaqrycln::fuzz {

// Answers requests of the calling thread, from inside their yields.
class Answerer {
 public:
  // For RemoteHosts.
  std::string Host() const { return "127.0.0.1," + std::to_string(peer_.port()); }

  // The answer from now on.
  void SetAnswer(std::string_view text) {
    answer_ = "TotalBytes:" + std::to_string(text.size()) + "\r\n" + std::string(text);
  }

  // Runs a call that may send one request.
  template <typename Call>
  auto Ask(Call&& call) {
    if (!isWaiting_) AnswerOnceConnected();
    auto result = call();
    peer_.Drop();
    return result;
  }

 private:
  // The first yield may be that of the timer's tick, before the connection.
  void AnswerOnceConnected() {
    isWaiting_ = true;
    Apartment::Current()->loop.Post([this] {
      if (!peer_.IsWanted()) return AnswerOnceConnected();
      isWaiting_ = false;
      peer_.Accept();
      peer_.Send(answer_);
    });
  }

  LoopbackPeer peer_;
  std::string answer_;
  bool isWaiting_ = false;
};

class AnsweringPage : public Answerer {
 public:
  AnsweringPage() {
    query.strSessionID = "S1";
    query.lngRequestTimeout = 10;
    query.RemoteHosts(Host());
    Require(query.Init(false), "a page can be created");
  }

  clsQuery query;
};

}  // namespace oxaqrycln::fuzz

#endif  // OXAQRYCLN_FUZZ_ANSWERING_PAGE_H_
