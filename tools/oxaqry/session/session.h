// session.h - the component over a pair of streams: one JSON object a line in, one a line out.
// For programs in any language.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_SESSION_SESSION_H_
#define OXAQRYCLN_TOOLS_OXAQRY_SESSION_SESSION_H_

#include <cstddef>
#include <iosfwd>

namespace oxaqrycln::oxaqry {

// A longer line is answered with an error; the session continues with the next line.
inline constexpr std::size_t kMaxLineBytes = std::size_t{64} << 20;
// Deeper nested JSON is answered with an error.
inline constexpr int kMaxJsonDepth = 16;

// Answers every line until the input ends, then drops every instance. The exit status: 0, or 1 when the answers can no
// longer be written. The instances live on the calling thread.
int RunSession(std::istream& in, std::ostream& out);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_SESSION_SESSION_H_
