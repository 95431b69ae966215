// terminal_encoding.h - text for a terminal whose encoding is not UTF-8. For the sources of POSIX systems only.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_TERMINAL_ENCODING_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_TERMINAL_ENCODING_H_

#include <ostream>
#include <streambuf>
#include <string>

namespace oxaqrycln::oxaqry {

// The encoding of the environment's locale; "" for UTF-8, and for plain ASCII, which stands for a locale that nobody
// has set.
std::string LocaleEncoding();

// While it exists, what is written to the stream as UTF-8 reaches it in the encoding; a character that this does not
// have becomes "?". Has no effect when the system does not know the encoding.
class EncodedStream : private std::streambuf {
 public:
  EncodedStream(std::ostream& stream, std::string encoding);
  ~EncodedStream() override;
  EncodedStream(const EncodedStream&) = delete;
  EncodedStream& operator=(const EncodedStream&) = delete;

 private:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

  std::ostream& stream_;
  std::streambuf* const target_;
  const std::string encoding_;
  std::string pending_;  // the beginning of a character
};

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_TERMINAL_ENCODING_H_
