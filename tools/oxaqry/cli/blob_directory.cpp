#include "tools/oxaqry/cli/blob_directory.h"

#include "platform/files/files.h"
#include "tools/oxaqry/cli/table.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {

namespace fs = std::filesystem;

fs::path LocalBlobDirectory(const Settings& settings) {
  const std::string directory = settings.Text("strBlobPathLocal");
  if (directory.empty()) {
    throw CommandError("no blob directory is set: give --blob-local, OXAQRY_BLOB_LOCAL or strBlobPathLocal");
  }
  fs::path path = NativePath(directory);
  std::error_code failed;
  if (!fs::is_directory(path, failed)) {
    throw CommandError("the blob directory \"" + path.string() + "\" (--blob-local) is no directory");
  }
  return path;
}

std::string RemoteBlobDirectory(const Settings& settings) {
  const bool isGiven = !settings.Value("strBlobPathRemote").IsEmpty();
  return settings.Text(isGiven ? "strBlobPathRemote" : "strBlobPathLocal");
}

std::unique_ptr<clsQuery> ConnectWithBlobs(const Settings& settings, const fs::path& local) {
  const std::string remote = RemoteBlobDirectory(settings);
  const std::string directory = ComponentPath(local);
  auto query = settings.Connect();
  query->strBlobPathLocal = directory;
  query->strBlobPathRemote = remote;
  return query;
}

std::string ComponentPath(const fs::path& path) {
  const auto text = FromUtf8(path.string());
  if (!text || text->find('\\') != std::string::npos) {
    throw CommandError("\"" + path.string() +
                       "\" cannot be used: the component takes no path with a \"\\\" or with a character that has no "
                       "place in the code page Windows-1252");
  }
  return *text;
}

std::string NativeName(std::string_view name) {
  if (!IsPlainFileName(name) || !IsPrintable(name))
    throw CommandError("\"" + Printable(name) + "\" is no plain file name");
  return NativePath(name);
}

std::string PathJson(const Json& document) {
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace oxaqrycln::oxaqry
