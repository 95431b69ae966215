#include "tools/oxaqry/transfers/fetched_file.h"

#include "tools/oxaqry/cli/blob_directory.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/cli/result.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

struct Content {
  std::string name;    // in the blob directory
  std::string length;  // in bytes, as the server reports it
};

Content Ask(ArchiveQuery& archive, const AskForFile& ask, const Interruption& interruption, const Output& output) {
  // The server writes the file under a name that only its answer contains.
  Progress progress(output, "waiting for the query server", std::nullopt);
  archive.Watch(interruption, [&](const RequestProgress&) { progress.Show(std::nullopt); });
  Variant name;
  Variant length;
  const Variant result = ask(archive, &name, &length);
  archive.Watch(interruption);
  archive.Count(result);
  if (name.ToText().empty()) throw CommandError("there is no such content");
  return {name.ToText(), length.ToText()};
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

// Copies instead of renaming: the directory may be on another machine, and the file may belong to the server.
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

void FetchFile(const Settings& settings, const FetchTarget& wanted, const Output& output, const AskForFile& ask,
               const std::function<FetchResult()>& result) {
  const fs::path local = LocalBlobDirectory(settings);
  const bool isNamed = !wanted.output.empty() && !fs::is_directory(wanted.output);
  if (isNamed) CheckTarget(wanted.output, wanted.force);
  const Interruption interruption;
  ArchiveQuery archive(settings, output);
  UseBlobDirectory(archive, settings, local);
  const Content content = Ask(archive, ask, interruption, output);
  const std::string name = NativeName(content.name);
  const fs::path source = local / name;
  const fs::path target = TargetPath(wanted.output, name);
  std::error_code absent;
  const bool isThere = fs::equivalent(source, target, absent);
  const std::int64_t size = CheckedSize(source, content.length);
  TemporaryFile fetched(source);  // its length shows that it is the requested one
  interruption.Check();
  if (isThere || wanted.keep) fetched.Keep();
  if (!isThere) Move(source, target, size, wanted.force, interruption, output);
  FetchResult printed = result();
  printed.members["file"] = target.string();
  printed.members["bytes"] = size;
  PrintResult(output, printed.members, printed.text + target.string() + " (" + ByteText(size) + ")");
}

void AddOutput(CLI::App& command, std::string& output, bool& force, const char* meaning) {
  command.add_option("-o,--output", output, meaning)->type_name("FILE");
  command.add_flag("--force", force, "overwrite a file of that name");
}

void AddFetchTarget(CLI::App& command, FetchTarget& target) {
  AddOutput(command, target.output, target.force,
            "file or directory to put it (default: the server's file name, in the current directory)");
  command.add_flag("--keep", target.keep, "leave the file in the blob directory, too");
}

void UseBlobDirectory(ArchiveQuery& archive, const Settings& settings, const fs::path& local) {
  archive->strBlobPathLocal = ComponentPath(local);
  archive->strBlobPathRemote = RemoteBlobDirectory(settings);
}

}  // namespace oxaqrycln::oxaqry
