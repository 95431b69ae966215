// The commands "transfer" and "upload": files over the connection to a query server.
#include <algorithm>
#include <limits>
#include <ostream>

#include "platform/files/files.h"
#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/blob_directory.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/cli/request_watch.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/transfers/transfer_commands.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

fs::path TransferTarget(const Settings& settings, const TransferRequest& request, const std::string& name) {
  if (request.output.empty()) return LocalBlobDirectory(settings) / name;
  return fs::is_directory(request.output) ? fs::path(request.output) / name : fs::path(request.output);
}

struct Sent {
  std::string file;
  std::string name;
  std::int64_t size;
};

std::int64_t SizeOf(const fs::path& file) {
  std::error_code failed;
  if (!fs::is_regular_file(file, failed)) throw CommandError("there is no file \"" + file.string() + "\" to send");
  const auto size = static_cast<std::int64_t>(fs::file_size(file));
  if (size > std::numeric_limits<std::int32_t>::max()) {
    throw CommandError("\"" + file.string() + "\" is larger than 2147483647 bytes");
  }
  return size;
}

// Sends a file of a directory that is no query server's business.
void Send(clsQuery& query, const fs::path& file, std::int64_t size, const Interruption& interruption,
          const Output& output) {
  query.strBlobPathLocal = ComponentPath(file.parent_path());
  Progress progress(output, file.filename().string(), size);
  const RequestWatch watch(interruption, [&](const RequestWatch::Amounts& amounts) {
    progress.Show(std::min(amounts.sent, size));  // the request stands before the file's bytes
  });
  Variant status;
  const Variant result = query.TELOUploadFile(ComponentPath(file.filename()), &status);
  interruption.Check();
  Count(result, status);
}

Sent UploadOne(clsQuery& query, const fs::path& local, const std::string& path, bool force,
               const Interruption& interruption, const Output& output) {
  const std::int64_t size = SizeOf(path);
  const std::string name = NativeName(ComponentPath(fs::path(path).filename()));
  const fs::path place = local / name;
  std::error_code absent;
  if (fs::equivalent(path, place, absent)) {
    Send(query, place, size, interruption, output);
    return {path, name, size};
  }
  NewFile file(place, force, name);
  file.CopyFrom(path, [&](std::int64_t) { interruption.Check(); });
  Send(query, file.part(), size, interruption, output);
  // Where both sides share the directory the server has just put the file there.
  const bool isThere = !force && fs::exists(place, absent);
  if (!isThere) file.Commit();
  return {path, name, size};
}

}  // namespace

int Transfer(const Settings& settings, const TransferRequest& request, const Output& output) {
  const std::string sent = FieldFromUtf8(request.name);
  const std::string name = NativeName(LastPathPart(sent));
  const Interruption interruption;
  NewFile file(TransferTarget(settings, request, name), request.force, name);
  const auto query = ConnectWithBlobs(settings, file.directory());
  {
    Progress progress(output, name, request.size);
    const RequestWatch watch(interruption,
                             [&](const RequestWatch::Amounts& amounts) { progress.Show(amounts.received); });
    Variant status;
    const Variant result = query->TELOTransferBLOB(sent, request.size, &status);
    interruption.Check();
    Count(result, status);
  }
  file.Commit();
  if (output.json) {
    output.out << PathJson({{"file", file.target().string()}, {"bytes", request.size}});
  } else {
    output.out << "Received " << file.target().string() << " (" << ByteText(request.size) << ")\n";
  }
  return 0;
}

int Upload(const Settings& settings, const UploadRequest& request, const Output& output) {
  const fs::path local = LocalBlobDirectory(settings);
  const Interruption interruption;
  const auto query = ConnectWithBlobs(settings, local);
  Json list = Json::array();
  for (const std::string& path : request.files) {
    const Sent sent = UploadOne(*query, local, path, request.force, interruption, output);
    list.push_back({{"file", sent.file}, {"name", sent.name}, {"bytes", sent.size}});
    if (!output.json) output.out << "Sent " << sent.file << " (" << ByteText(sent.size) << ")\n" << std::flush;
  }
  if (output.json) output.out << PathJson({{"files", std::move(list)}});
  return 0;
}

}  // namespace oxaqrycln::oxaqry
