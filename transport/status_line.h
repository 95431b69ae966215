// status_line.h - the first line of a text answer: whether the server carried the request out, or why it did not.
#ifndef OXAQRYCLN_TRANSPORT_STATUS_LINE_H_
#define OXAQRYCLN_TRANSPORT_STATUS_LINE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace oxaqrycln {

// The position of the first data line, after the status line. Nothing when the status line reports no success;
// errorText then receives its text.
std::optional<std::size_t> DataStart(std::string_view response, std::string& errorText);

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_TRANSPORT_STATUS_LINE_H_
