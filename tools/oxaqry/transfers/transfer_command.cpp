// The commands "transfer" and "upload": files over the connection to a query server.
#include <algorithm>
#include <filesystem>
#include <ostream>

#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/transfers/fetched_file.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

struct TransferRequest {
  std::string name;
  std::int32_t size = 0;
  std::string output;  // a file or directory, or kStandardOutput; "" for the local blob directory
  bool force = false;
};

fs::path TransferTarget(const Settings& settings, const TransferRequest& request, const std::string& name) {
  if (request.output == kStandardOutput) return fs::temp_directory_path() / name;
  if (!request.output.empty()) {
    return fs::is_directory(request.output) ? fs::path(request.output) / name : fs::path(request.output);
  }
  settings.RequireBlobDirectory();
  std::string directory = settings.ForArchive().blobLocal;
  std::ranges::replace(directory, '\\', '/');
  return fs::path(directory) / name;
}

// Into the directory of the unfinished file.
void Receive(const Settings& settings, const TransferRequest& request, const std::string& name, const NewFile& file,
             const Output& output) {
  settings.RequireServers();
  client::Settings own = settings.ForArchive();
  if (own.blobRemote.empty()) own.blobRemote = own.blobLocal;
  own.blobLocal = file.directory().string();
  client::Archive archive = OpenArchive(own, output);
  Progress progress(output, name, request.size);
  const InterruptedBySignals watch(archive, [&](const client::Progress& bytes) { progress.Show(bytes.received); });
  archive.Transfer(request.name, request.size);
}

int Transfer(const Settings& settings, const TransferRequest& request, const Output& output) {
  CheckOutput(request.output, output);
  const std::string name = request.name.substr(request.name.find_last_of("\\/") + 1);
  if (!IsPrintable(name)) throw CommandError("\"" + Printable(name) + "\" is no file name");
  const bool isShown = request.output == kStandardOutput;
  const Interruption interruption;
  NewFile file(TransferTarget(settings, request, name), request.force || isShown, name);
  Receive(settings, request, name, file, output);
  if (isShown) {
    CopyToOutput(file.part(), output);
    return 0;
  }
  file.Commit();
  const std::string path = file.target().string();
  return PrintResult(output, {{"file", path}, {"bytes", request.size}},
                     "Received " + path + " (" + ByteText(request.size) + ")");
}

int Upload(const Settings& settings, const std::vector<std::string>& files, const Output& output) {
  const Interruption interruption;
  client::Archive archive = OpenArchive(settings, output);
  Json list = Json::array();
  for (const std::string& file : files) {
    std::error_code failed;
    const auto size = static_cast<std::int64_t>(fs::file_size(file, failed));
    if (failed) throw CommandError("there is no file \"" + file + "\" to send");
    const std::string name = fs::path(file).filename().string();
    Progress progress(output, name, size);
    const InterruptedBySignals watch(archive, [&](const client::Progress& bytes) {
      progress.Show(std::min(bytes.sent, size));  // the request itself comes before the bytes of the file
    });
    archive.Upload(file);
    list.push_back({{"file", file}, {"name", name}, {"bytes", size}});
    if (!output.json) output.out << "Sent " << file << " (" << ByteText(size) << ")\n" << std::flush;
  }
  return PrintResult(output, {{"files", std::move(list)}}, "");
}

}  // namespace

void AddTransferCommands(CommandParser& parser) {
  const auto [transfer, request] = parser.AddQuery(
      parser.app(), "transfer", "receive a file of the remote blob directory over the connection",
      "Examples:\n  oxaqry transfer scan.tif --size 48213 --blob-local /srv/blobs --hosts localhost,2001\n"
      "  oxaqry transfer scan.tif --size 48213 -o scan.tif --blob-remote 'D:\\blobs' --hosts localhost,2001",
      Transfer);
  transfer->add_option("NAME", request->name, "the file's name")->required();
  transfer->add_option("--size", request->size, "the file's length in bytes")
      ->required()
      ->check(FromZero<std::int32_t>())
      ->type_name("N");
  AddOutput(*transfer, request->output, request->force,
            "file or directory to write to, \"-\" for standard output (default: NAME in the local blob directory)");
  const auto [upload, files] = parser.AddQuery(
      parser.app(), "upload", "send files into the query server's blob directory",
      "Example:\n  oxaqry upload scan.tif letter.pdf --blob-remote 'D:\\blobs' --hosts localhost,2001", Upload);
  upload->add_option("FILE", *files, "the files, wherever they are; each keeps its name")->required();
}

}  // namespace oxaqrycln::oxaqry
