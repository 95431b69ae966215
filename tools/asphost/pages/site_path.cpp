#include "tools/asphost/pages/site_path.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "tools/asphost/web/encoding.h"

namespace oxaqrycln::asphost {
namespace {

constexpr std::size_t kLongestPath = 200;

constexpr std::array<std::pair<std::string_view, std::string_view>, 15> kStaticTypes = {{
    {"css", "text/css"},
    {"gif", "image/gif"},
    {"htm", "text/html"},
    {"html", "text/html"},
    {"ico", "image/x-icon"},
    {"jpeg", "image/jpeg"},
    {"jpg", "image/jpeg"},
    {"js", "text/javascript"},
    {"pdf", "application/pdf"},
    {"png", "image/png"},
    {"svg", "image/svg+xml"},
    {"tif", "image/tiff"},
    {"tiff", "image/tiff"},
    {"txt", "text/plain"},
    {"webp", "image/webp"},
}};

// The names of devices, which Windows finds in every folder and with every extension.
bool IsDevice(std::string_view name) {
  const std::string stem = AsciiLowerCase(name.substr(0, name.find('.')));
  for (const std::string_view device : {"con", "prn", "aux", "nul", "conin$", "conout$"}) {
    if (stem == device) return true;
  }
  return stem.size() >= 4 && (stem.starts_with("com") || stem.starts_with("lpt"));
}

// Windows ignores dots and blanks at the end of a name, reads ":" as a stream or drive and "~" as a short name.
bool IsPlainName(std::string_view name) {
  const auto isForbidden = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f ||
           std::string_view("<>:\"|?*~\\/").find(c) != std::string_view::npos;
  };
  return !name.empty() && name.front() != '.' && name.back() != '.' && name.back() != ' ' &&
         std::ranges::none_of(name, isForbidden) && !IsDevice(name);
}

// Follows the names of a path; false when one of them is not plain or leads out of the site.
bool Follow(std::vector<std::string_view>& names, std::string_view path) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of("/\\"), path.size());
    const std::string_view name = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (name == "..") {
      if (names.empty()) return false;
      names.pop_back();
    } else if (!name.empty() && name != ".") {
      if (!IsPlainName(name)) return false;
      names.push_back(name);
    }
  }
  return true;
}

std::string Join(const std::vector<std::string_view>& names) {
  std::string path;
  for (const std::string_view name : names) path.append(path.empty() ? "" : "/").append(name);
  return path;
}

std::string ExtensionOf(std::string_view sitePath) {
  const std::size_t dot = sitePath.rfind('.');
  return dot == std::string_view::npos ? std::string() : AsciiLowerCase(sitePath.substr(dot + 1));
}

}  // namespace

std::optional<std::string> SitePathOfRequest(std::string_view path) {
  if (!path.starts_with('/') || path.size() > kLongestPath || path.find("..") != std::string_view::npos ||
      path.find('\\') != std::string_view::npos) {
    return std::nullopt;
  }
  std::vector<std::string_view> names;
  if (!Follow(names, path)) return std::nullopt;
  if (path.back() == '/') names.emplace_back("default.asp");
  return Join(names);
}

std::optional<std::string> ResolveSitePath(std::string_view from, std::string_view path) {
  if (path.size() > kLongestPath) return std::nullopt;
  std::vector<std::string_view> names;
  const bool fromRoot = path.starts_with('/') || path.starts_with('\\');
  const std::size_t folderEnd = from.rfind('/');
  if (!fromRoot && folderEnd != std::string_view::npos && !Follow(names, from.substr(0, folderEnd)))
    return std::nullopt;
  if (!Follow(names, path)) return std::nullopt;
  return Join(names);
}

bool IsPage(std::string_view sitePath) { return ExtensionOf(sitePath) == "asp"; }

std::optional<std::string_view> StaticContentType(std::string_view sitePath) {
  const std::string extension = ExtensionOf(sitePath);
  const auto* const found =
      std::ranges::find(kStaticTypes, extension, &std::pair<std::string_view, std::string_view>::first);
  if (found == kStaticTypes.end()) return std::nullopt;
  return found->second;
}

}  // namespace oxaqrycln::asphost
