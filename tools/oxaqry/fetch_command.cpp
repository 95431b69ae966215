// The command "fetch": content of a document by way of the blob directory.
#include <ostream>

#include "tools/oxaqry/answers.h"
#include "tools/oxaqry/blob_directory.h"
#include "tools/oxaqry/document_access.h"
#include "tools/oxaqry/new_file.h"
#include "tools/oxaqry/progress.h"
#include "tools/oxaqry/request_watch.h"
#include "tools/oxaqry/transfer_commands.h"

namespace oxaqrycln {
namespace {

namespace fs = std::filesystem;

struct Content {
  std::string name;    // in the blob directory
  std::string length;  // in bytes, as the server tells it
};

Content Ask(clsQuery& query, const FetchRequest& request, const Interruption& interruption, const Output& output) {
  const DocumentKey key(request.document);
  // The server writes the file under a name that only its answer tells.
  Progress progress(output, "waiting for the query server", std::nullopt);
  const RequestWatch watch(interruption, [&](const RequestWatch::Amounts&) { progress.Show(std::nullopt); });
  Variant name;
  Variant length;
  Variant status;
  Variant result;
  if (request.segment) {
    result = query.TELOGetSegmentData(key.channel, key.archive, key.document, key.version, *request.segment, &name,
                                      &length, &status);
  } else if (request.printField) {
    result = query.TELOGetSegmentPrintfile(key.channel, key.archive, key.document, key.version,
                                           FieldFromUtf8(*request.printField), &name, &length, &status);
  } else if (!request.pages.empty()) {
    result = query.TELOGetSegmentMultiTIF(key.channel, key.archive, key.document, key.version,
                                          FieldFromUtf8(request.pages), &name, &length, &status);
  } else {
    result = query.TELOGetSegmentFirstBLOB(key.channel, key.archive, key.document, key.version,
                                           FieldFromUtf8(request.extension), &name, &length, &status);
  }
  // A file that is there by now goes with an interrupted command.
  if (result.ToLong() < 0) interruption.Check();
  Count(result, status);
  Content content{name.ToText(), length.ToText()};
  if (content.name.empty()) throw CommandError("the document has no such content");
  return content;
}

std::int64_t CheckedSize(const fs::path& file, const std::string& length) {
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(file, failed);
  if (failed) {
    throw CommandError("the query server's file \"" + file.string() +
                       "\" is not there: check that --blob-local and --blob-remote are the same directory");
  }
  if (std::to_string(size) != length) {
    throw CommandError("the query server's file \"" + file.string() + "\" has " + std::to_string(size) +
                       " bytes instead of " + length);
  }
  return static_cast<std::int64_t>(size);
}

fs::path TargetPath(const std::string& output, const std::string& name) {
  const fs::path path = output.empty() ? fs::path(".") : fs::path(output);
  return fs::is_directory(path) ? (path / name).lexically_normal() : path;
}

// Not moved by its name: the directory may lie on another machine, and the file belong to the server.
void Move(const fs::path& source, const fs::path& target, std::int64_t size, bool force,
          const Interruption& interruption, const Output& output) {
  NewFile file(target, force);
  {
    Progress progress(output, target.filename().string(), size);
    file.CopyFrom(source, [&](std::int64_t copied) {
      interruption.Check();
      progress.Show(copied);
    });
  }
  file.Commit();
}

}  // namespace

int Fetch(const Settings& settings, const FetchRequest& request, const Output& output) {
  const fs::path local = LocalBlobDirectory(settings);
  const bool isNamed = !request.output.empty() && !fs::is_directory(request.output);
  if (isNamed) CheckTarget(request.output, request.force);
  const Interruption interruption;
  const auto query = ConnectWithBlobs(settings, local);
  const Content content = Ask(*query, request, interruption, output);
  const std::string name = NativeName(content.name);
  const fs::path source = local / name;
  const fs::path target = TargetPath(request.output, name);
  std::error_code absent;
  const bool isThere = fs::equivalent(source, target, absent);
  const std::int64_t size = CheckedSize(source, content.length);
  PassingFile passing(source);  // the one that was asked for, as its length tells
  interruption.Check();
  if (isThere || request.keep) passing.Keep();
  if (!isThere) Move(source, target, size, request.force, interruption, output);
  if (output.json) {
    output.out << PathJson({{"name", ToText(request.document)}, {"file", target.string()}, {"bytes", size}});
  } else {
    output.out << "Fetched " << target.string() << " (" << ByteText(size) << ")\n";
  }
  return 0;
}

}  // namespace oxaqrycln
