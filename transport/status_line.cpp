#include "transport/status_line.h"

#include <algorithm>

namespace oxaqrycln {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kSuccess = "Status: OK";
constexpr std::size_t kStatusWord = 7;  // characters of "Status:"

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

}  // namespace

std::optional<std::size_t> DataStart(std::string_view response, std::string& errorText) {
  const std::size_t lineEnd = response.find(kLineEnd);
  const std::string_view status = response.substr(0, lineEnd);
  if (status != kSuccess) {
    errorText = Trimmed(status.substr(std::min(kStatusWord, status.size())));
    return std::nullopt;
  }
  return lineEnd == std::string_view::npos ? response.size() : lineEnd + kLineEnd.size();
}

}  // namespace oxaqrycln
