// The commands "transfer" and "upload": files over the connection to a query server.
#include <algorithm>
#include <limits>
#include <ostream>

#include "tools/oxaqry/cli/blob_directory.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/text.h"
#include "tools/oxaqry/transfers/fetched_file.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

struct TransferRequest {
  std::string name;
  std::int32_t size = 0;
  std::string output;  // a file or directory; "" for the local blob directory
  bool force = false;
};

struct UploadRequest {
  std::vector<std::string> files;
  bool force = false;
};

fs::path TransferTarget(const Settings& settings, const TransferRequest& request, const std::string& name) {
  if (request.output.empty()) return LocalBlobDirectory(settings) / name;
  return fs::is_directory(request.output) ? fs::path(request.output) / name : fs::path(request.output);
}

std::int64_t SizeOf(const fs::path& file) {
  std::error_code failed;
  if (!fs::is_regular_file(file, failed)) throw CommandError("there is no file \"" + file.string() + "\" to send");
  const auto size = static_cast<std::int64_t>(fs::file_size(file));
  if (size > std::numeric_limits<std::int32_t>::max()) {
    throw CommandError("\"" + file.string() + "\" is larger than 2147483647 bytes");
  }
  return size;
}

// Sends a file whose directory need not be known to the query server.
void Send(ArchiveQuery& archive, const fs::path& file, std::int64_t size, const Interruption& interruption,
          const Output& output) {
  archive->strBlobPathLocal = ComponentPath(file.parent_path());
  Progress progress(output, file.filename().string(), size);
  archive.Watch(interruption, [&](const RequestProgress& bytes) {
    progress.Show(std::min(bytes.sent, size));  // the request itself comes before the bytes of the file
  });
  const Variant result = archive->TELOUploadFile(ComponentPath(file.filename()), archive.status());
  archive.Watch(interruption);
  archive.Count(result);
}

// Returns the name under which the file is sent.
std::string UploadOne(ArchiveQuery& archive, const fs::path& local, const std::string& path, std::int64_t size,
                      bool force, const Interruption& interruption, const Output& output) {
  std::string name = NativeName(ComponentPath(fs::path(path).filename()));
  const fs::path place = local / name;
  std::error_code absent;
  if (fs::equivalent(path, place, absent)) {
    Send(archive, place, size, interruption, output);
    return name;
  }
  NewFile file(place, force, name);
  file.CopyFrom(path, [&](std::int64_t) { interruption.Check(); });
  Send(archive, file.part(), size, interruption, output);
  // Where both sides share the directory, the server has just put the file there.
  const bool isThere = !force && fs::exists(place, absent);
  if (!isThere) file.Commit();
  return name;
}

int Transfer(const Settings& settings, const TransferRequest& request, const Output& output) {
  const std::string sent = FieldFromUtf8(request.name);
  const std::string name = NativeName(sent.substr(sent.find_last_of("\\/") + 1));
  const Interruption interruption;
  NewFile file(TransferTarget(settings, request, name), request.force, name);
  ArchiveQuery archive(settings, output);
  UseBlobDirectory(archive, settings, file.directory());
  {
    Progress progress(output, name, request.size);
    archive.Watch(interruption, [&](const RequestProgress& bytes) { progress.Show(bytes.received); });
    const Variant result = archive->TELOTransferBLOB(sent, request.size, archive.status());
    archive.Watch(interruption);
    archive.Count(result);
  }
  file.Commit();
  const std::string path = file.target().string();
  return PrintResult(output, {{"file", path}, {"bytes", request.size}},
                     "Received " + path + " (" + ByteText(request.size) + ")");
}

int Upload(const Settings& settings, const UploadRequest& request, const Output& output) {
  const fs::path local = LocalBlobDirectory(settings);
  const Interruption interruption;
  ArchiveQuery archive(settings, output);
  UseBlobDirectory(archive, settings, local);
  Json list = Json::array();
  for (const std::string& path : request.files) {
    const std::int64_t size = SizeOf(path);
    const std::string name = UploadOne(archive, local, path, size, request.force, interruption, output);
    list.push_back({{"file", path}, {"name", name}, {"bytes", size}});
    if (!output.json) output.out << "Sent " << path << " (" << ByteText(size) << ")\n" << std::flush;
  }
  if (output.json) PrintResult(output, {{"files", std::move(list)}}, "");
  return 0;
}

// Other forms of numbers are refused: 0x10, and 010, which looks like octal.
std::string CheckDecimal(const std::string& text) {
  const bool isDecimal = ParseNumber(text) && (text.size() == 1 || text[0] != '0');
  return isDecimal ? "" : "\"" + text + "\" is not a whole number from 0 to 2147483647";
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
      ->check(CLI::Validator(CheckDecimal, ""))
      ->type_name("N");
  AddOutput(*transfer, request->output, request->force,
            "file or directory to write to (default: NAME in the local blob directory)");
  const auto [upload, files] = parser.AddQuery(
      parser.app(), "upload", "send files to the query server's blob directory",
      "Example:\n  oxaqry upload scan.tif letter.pdf --blob-local /srv/blobs --hosts localhost,2001", Upload);
  upload->add_option("FILE", files->files, "the files; those that are not in the local blob directory are copied there")
      ->required();
  upload->add_flag("--force", files->force, "overwrite files of these names in the local blob directory");
}

}  // namespace oxaqrycln::oxaqry
