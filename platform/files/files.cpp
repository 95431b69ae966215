#include "platform/files/files.h"

#include <algorithm>
#include <array>

#include "values/code_page.h"

namespace oxaqrycln {
namespace {

constexpr std::size_t kLongestName = 255;

// Names that stand for devices on Windows, whatever extension follows.
bool IsDeviceName(std::string_view name) {
  static constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
  std::string stem = UpperCase(name.substr(0, name.find('.')));
  stem.erase(stem.find_last_not_of(' ') + 1);
  if (std::ranges::find(kDevices, stem) != kDevices.end()) return true;
  const bool numbered = stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT"));
  // The superscript digits count as digits there.
  return numbered && std::string_view("123456789\xB9\xB2\xB3").find(stem[3]) != std::string_view::npos;
}

}  // namespace

std::string_view LastPathPart(std::string_view path) noexcept {
  const std::size_t separator = path.find_last_of("\\/");
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

bool IsPlainFileName(std::string_view name) noexcept {
  if (name.empty() || name.size() > kLongestName || name == "." || name == "..") return false;
  const auto forbidden = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '/' || c == '\\' || c == ':';
  };
  if (std::ranges::any_of(name, forbidden)) return false;
  if (name.back() == '.' || name.back() == ' ') return false;
  return !IsDeviceName(name);
}

}  // namespace oxaqrycln
