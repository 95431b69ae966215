#include "tools/oxaqry/cli/blob_directory.h"

#include <algorithm>

#include "tools/oxaqry/cli/table.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {

namespace fs = std::filesystem;

fs::path LocalBlobDirectory(const Settings& settings) {
  const std::string directory = settings.Text("strBlobPathLocal");
  if (directory.empty()) {
    throw CommandError("no blob directory is set: give --blob-local, OXAQRY_BLOB_LOCAL or strBlobPathLocal");
  }
  std::string native = ToUtf8(directory);
  std::ranges::replace(native, '\\', '/');
  fs::path path(native);
  std::error_code failed;
  if (!fs::is_directory(path, failed)) {
    throw CommandError("the blob directory \"" + path.string() + "\" (--blob-local) is not a directory");
  }
  return path;
}

std::string RemoteBlobDirectory(const Settings& settings) {
  const bool isGiven = !settings.Value("strBlobPathRemote").IsEmpty();
  return settings.Text(isGiven ? "strBlobPathRemote" : "strBlobPathLocal");
}

std::string ComponentPath(const fs::path& path) {
  const auto text = FromUtf8(path.generic_string());
  if (!text || text->find('\\') != std::string::npos) {
    throw CommandError("\"" + path.string() +
                       "\" cannot be used: the component takes no path with a \"\\\" or with a character that has no "
                       "place in the code page Windows-1252");
  }
  return *text;
}

std::string NativeName(std::string_view name) {
  const bool isPlain =
      !name.empty() && name != "." && name != ".." && name.find_first_of("/\\:") == std::string_view::npos;
  if (!isPlain || !IsPrintable(name)) throw CommandError("\"" + Printable(name) + "\" is not a plain file name");
  return ToUtf8(name);
}

}  // namespace oxaqrycln::oxaqry
