// answering_page.h - a clsQuery that gets the same answer to every request, in a single thread.
#ifndef OXAQRYCLN_FUZZ_ANSWERING_PAGE_H_
#define OXAQRYCLN_FUZZ_ANSWERING_PAGE_H_

#include <string>

#include "component/clsQuery.h"
#include "fuzz/input.h"
#include "fuzz/loopback_peer.h"
#include "transport/apartment.h"

namespace oxaqrycln::fuzz {

class AnsweringPage {
 public:
  AnsweringPage() {
    query.strSessionID = "S1";
    query.lngRequestTimeout = 10;
    query.RemoteHosts("127.0.0.1," + std::to_string(peer_.port()));
    Require(query.Init(false), "a page can be created");
  }

  // The answer of the peer from now on.
  void SetAnswer(std::string_view text) {
    answer_ = "TotalBytes:" + std::to_string(text.size()) + "\r\n" + std::string(text);
  }

  // Runs a call of the query that sends one request.
  template <typename Call>
  auto Ask(Call&& call) {
    AnswerOnceConnected();
    auto result = call();
    peer_.Drop();
    return result;
  }

  clsQuery query;

 private:
  // The first yield may be that of the timer's tick, before the connection.
  void AnswerOnceConnected() {
    Apartment::Current()->loop.Post([this] {
      if (!peer_.IsWanted()) return AnswerOnceConnected();
      peer_.Accept();
      peer_.Send(answer_);
    });
  }

  LoopbackPeer peer_;
  std::string answer_;
};

}  // namespace oxaqrycln::fuzz

#endif  // OXAQRYCLN_FUZZ_ANSWERING_PAGE_H_
