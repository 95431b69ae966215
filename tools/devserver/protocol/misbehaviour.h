// misbehaviour.h - deliberate violations of the protocol, for testing clients.
#ifndef OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_MISBEHAVIOUR_H_
#define OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_MISBEHAVIOUR_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace oxaqrycln::devserver {

struct Misbehaviour {
  enum class Mode {
    kNone,
    kRefuse,     // accept and reset at once
    kDelay,      // answer after number milliseconds
    kSilent,     // read the request, never answer
    kCut,        // close after number bytes of the answer
    kReset,      // reset after number bytes of the answer
    kBytewise,   // send byte by byte, number milliseconds apart
    kCount,      // announce the text instead of the byte count
    kNoHeader,   // leave the header line out
    kNeverRead,  // accept and never read
  };
  Mode mode = Mode::kNone;
  std::uint32_t number = 0;
  std::string text;
};

// Reads "refuse", "delay:MS", "silent", "cut:N", "reset:N", "bytewise" or "bytewise:MS", "count:TEXT", "no-header",
// "never-read"; "none" means correct behaviour. Raises ServerError for anything else.
Misbehaviour ParseMisbehaviour(std::string_view text);

// The bytes that are sent for an answer.
std::string WireBytes(std::string_view answer, const Misbehaviour& misbehaviour);

}  // namespace oxaqrycln::devserver

#endif  // OXAQRYCLN_TOOLS_DEVSERVER_PROTOCOL_MISBEHAVIOUR_H_
