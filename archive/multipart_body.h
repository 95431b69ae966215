// multipart_body.h - takes the first file out of a multipart form body that comes in pieces of any size.
// Knows nothing of requests or directories; holds no more than a piece and one part's header.
#ifndef OXAQRYCLN_ARCHIVE_MULTIPART_BODY_H_
#define OXAQRYCLN_ARCHIVE_MULTIPART_BODY_H_

#include <string>
#include <string_view>

namespace oxaqrycln {

class MultipartBody {
 public:
  // Where the file goes.
  class Sink {
   public:
    // A part with a file name has begun; the name is the client's, not empty. False passes the part over.
    virtual bool Begin(std::string_view clientName) = 0;
    // Its next bytes.
    virtual void Content(std::string_view bytes) = 0;

   protected:
    ~Sink() = default;
  };

  explicit MultipartBody(Sink& sink) noexcept : sink_(sink) {}

  // The next bytes of the body. Raises Invalid procedure call for what cannot be a form: no boundary line, a part's
  // header without an end; passes on what the sink raises.
  void Take(std::string_view piece);
  // True when the file is whole and nothing more of the body is needed.
  bool HasFile() const noexcept { return state_ == State::FileEnded; }
  // To be called at the end of the body: true when a file came whole, false when the form held none. Raises Invalid
  // procedure call when the body ended before its closing boundary.
  bool Finish() const;

 private:
  // What the bytes at the front of Rest() belong to.
  enum class State { Boundary, Header, Content, FileEnded, BodyEnded };

  bool TakeBoundary();
  bool TakeHeader();
  bool TakeContent();
  void HandOver(std::size_t byteCount);
  std::string_view Rest() const noexcept { return std::string_view(rest_).substr(taken_); }

  Sink& sink_;
  State state_ = State::Boundary;
  std::string rest_;       // bytes that could not be judged yet ...
  std::size_t taken_ = 0;  // ... behind those that were, which go once for each piece
  std::string delimiter_;  // CR LF and the boundary line
  bool inFile_ = false;    // the part has a file name
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_MULTIPART_BODY_H_
