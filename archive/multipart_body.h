// multipart_body.h - extracts the first file of a multipart form body that arrives in pieces of any size.
// Knows nothing of requests or directories; keeps no more than a piece and the header of one part.
#ifndef OXAQRYCLN_ARCHIVE_MULTIPART_BODY_H_
#define OXAQRYCLN_ARCHIVE_MULTIPART_BODY_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace oxaqrycln {

class MultipartBody {
 public:
  // Where the file goes.
  class Sink {
   public:
    // A part with a file name has begun; the name is as the client sent it, not empty. False skips the part.
    virtual bool Begin(std::string_view clientName) = 0;
    // Its next bytes.
    virtual void Content(std::string_view bytes) = 0;

   protected:
    ~Sink() = default;
  };

  explicit MultipartBody(Sink& sink) noexcept : sink_(sink) {}

  // The next bytes of the body. Raises Invalid procedure call for a body that is not a form: no boundary line, a part's
  // header without an end. Errors of the sink are passed on.
  void Take(std::string_view piece);
  // True when the file is complete and nothing more of the body is needed.
  bool HasFile() const noexcept { return state_ == State::FileEnded; }
  // To be called at the end of the body: true if a file is complete, false if the form has none. Raises Invalid
  // procedure call if the body ended before its closing boundary.
  bool Finish() const;

 private:
  // What Rest() begins with.
  enum class State { Boundary, Header, Content, FileEnded, BodyEnded };

  bool TakeBoundary();
  bool TakeHeader();
  bool TakeContent();
  void HandOver(std::size_t byteCount);
  std::string_view Rest() const noexcept { return std::string_view(rest_).substr(taken_); }

  Sink& sink_;
  State state_ = State::Boundary;
  std::string rest_;       // the bytes that are not processed yet ...
  std::size_t taken_ = 0;  // ... after so many that are, which the next piece removes
  std::string delimiter_;  // CR LF and the boundary line
  bool inFile_ = false;    // the part has a file name
};

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_ARCHIVE_MULTIPART_BODY_H_
