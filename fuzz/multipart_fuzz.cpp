// A form body, passed at once and in pieces. Input: sizes of pieces, a line end, the body.
#include "archive/multipart_body.h"
#include "fuzz/input.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

struct Outcome final : MultipartBody::Sink {
  bool Begin(std::string_view clientName) override {
    Require(!clientName.empty(), "a file has a name");
    Require(!begun, "only one file is taken");
    begun = clientName.front() != '!';  // so that parts are passed over, too
    if (begun) name = clientName;
    return begun;
  }
  void Content(std::string_view bytes) override {
    Require(begun, "content belongs to a file");
    content += bytes;
  }

  bool begun = false;
  bool whole = false;
  std::int32_t error = 0;
  std::string name;
  std::string content;
};

Outcome Feed(const std::vector<std::string_view>& pieces) {
  Outcome outcome;
  MultipartBody body(outcome);
  outcome.error = ErrorOf([&] {
    for (const std::string_view piece : pieces) body.Take(piece);
    outcome.whole = body.Finish();
  });
  return outcome;
}

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view body) {
  const std::string_view sizes = CutOff(body, "\n");
  const Outcome atOnce = Feed({body});
  const Outcome inPieces = Feed(Pieces(body, sizes));
  Require(atOnce.error == 0 || atOnce.error == error::kInvalidProcedureCall, "a body that is not a form is refused");
  Require(atOnce.error == inPieces.error && atOnce.whole == inPieces.whole, "pieces do not change the outcome");
  Require(atOnce.name == inPieces.name, "pieces do not change the name");
  if (atOnce.error == 0) Require(atOnce.content == inPieces.content, "pieces do not change the content");
  Require(body.find(atOnce.content) != std::string_view::npos, "the content is a part of the body");
  Require(!atOnce.whole || atOnce.begun, "a complete file has begun");
}
