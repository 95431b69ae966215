#include "client/blob_files.h"

#include <algorithm>
#include <system_error>

#include "client/text.h"

namespace oxaqrycln::client {

namespace fs = std::filesystem;

fs::path PathOf(std::string_view utf8) { return fs::path(std::u8string(utf8.begin(), utf8.end())); }

std::string Utf8Of(const fs::path& path) {
  const std::u8string text = path.generic_u8string();
  return {text.begin(), text.end()};
}

std::string PathText(const fs::path& path) {
  const std::string text = Utf8Of(path);
  if (fs::path::preferred_separator == '/' && text.find('\\') != std::string::npos) {
    throw BadArgument("the path \"" + text + "\" holds a \"\\\"");
  }
  return RequestText(text, "the path \"" + text + "\"");
}

fs::path BlobDirectory(const Settings& settings) {
  if (settings.blobLocal.empty()) throw BadArgument("the settings name no local blob directory");
  std::string native = settings.blobLocal;
  std::ranges::replace(native, '\\', '/');
  return PathOf(native);
}

std::optional<fs::path> FetchFile(QueryAccess& query, const Settings& settings,
                                  const std::function<Variant(Variant* name, Variant* length)>& ask) {
  const fs::path directory = BlobDirectory(settings);
  Variant name;
  Variant length;
  query.Count(ask(&name, &length));
  const std::string stored = TextOf(name);
  if (stored.empty()) return std::nullopt;
  fs::path file = directory / PathOf(stored);
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(file, failed);
  const std::string what = "the query server's file \"" + Utf8Of(file) + "\"";
  if (failed) {
    throw Error(what +
                " is not there: the local and the remote blob directory of the settings must be the same directory");
  }
  if (std::to_string(size) != TextOf(length)) {
    throw Error(what + " has " + std::to_string(size) + " bytes instead of " + TextOf(length));
  }
  return file;
}

}  // namespace oxaqrycln::client
