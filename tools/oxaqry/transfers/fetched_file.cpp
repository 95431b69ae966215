#include "tools/oxaqry/transfers/fetched_file.h"

#include <fstream>
#include <ostream>
#include <vector>

#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/new_file.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

fs::path Ask(client::Archive& archive, const AskForFile& ask, const Output& output) {
  // The server writes the file under a name that only its answer contains.
  Progress progress(output, "waiting for the query server", std::nullopt);
  const InterruptedBySignals watch(archive, [&](const client::Progress&) { progress.Show(std::nullopt); });
  const auto file = ask(archive);
  if (!file) throw CommandError("there is no such content");
  return *file;
}

fs::path TargetPath(const std::string& output, const fs::path& name) {
  const fs::path path = output.empty() ? fs::path(".") : fs::path(output);
  return fs::is_directory(path) ? (path / name).lexically_normal() : path;
}

// Copies instead of renaming: the directory may be on another machine, and the file may belong to the server.
void Move(const fs::path& source, const fs::path& target, std::int64_t size, bool force, const Output& output) {
  NewFile file(target, force);
  {
    Progress progress(output, target.filename().string(), size);
    file.CopyFrom(source, [&](std::int64_t copied) {
      Interruption::Check();
      progress.Show(copied);
    });
  }
  file.Commit();
}

}  // namespace

int FetchFile(const Settings& settings, const FetchTarget& wanted, const Output& output, const AskForFile& ask,
              const char* what, Json members) {
  const bool isShown = wanted.output == kStandardOutput;
  CheckOutput(wanted.output, output);
  settings.RequireServers();
  settings.RequireBlobDirectory();
  const bool isNamed = !isShown && !wanted.output.empty() && !fs::is_directory(wanted.output);
  if (isNamed) CheckTarget(wanted.output, wanted.force);
  const Interruption interruption;
  client::Archive archive = OpenArchive(settings, output);
  const fs::path source = Ask(archive, ask, output);
  TemporaryFile fetched(source);  // the client layer has checked that it is the requested one
  if (wanted.keep) fetched.Keep();
  Interruption::Check();
  if (isShown) {
    CopyToOutput(source, output);
    return 0;
  }
  const fs::path target = TargetPath(wanted.output, source.filename());
  const auto size = static_cast<std::int64_t>(fs::file_size(source));
  std::error_code absent;
  if (fs::equivalent(source, target, absent)) {
    fetched.Keep();
  } else {
    Move(source, target, size, wanted.force, output);
  }
  members["file"] = target.string();
  members["bytes"] = size;
  return PrintResult(output, members, what + Printable(target.string()) + " (" + ByteText(size) + ")");
}

void AddOutput(CLI::App& command, std::string& output, bool& force, const char* meaning) {
  command.add_option("-o,--output", output, meaning)->type_name("FILE");
  command.add_flag("--force", force, "overwrite a file of that name");
}

void AddFetchTarget(CLI::App& command, FetchTarget& target) {
  AddOutput(command, target.output, target.force,
            "file or directory to put it, \"-\" for standard output (default: the server's file name, in the current "
            "directory)");
  command.add_flag("--keep", target.keep, "leave the file in the blob directory, too");
}

void CheckOutput(const std::string& target, const Output& output) {
  if (target == kStandardOutput && output.json) {
    throw UsageError("--json and \"-o -\" both write on standard output: give one of them");
  }
}

void CopyToOutput(const fs::path& file, const Output& output) {
  constexpr std::size_t kPieceSize = std::size_t{1} << 20;
  std::ifstream in(file, std::ios::binary);
  if (!in) throw CommandError("cannot read \"" + file.string() + "\"");
  std::vector<char> piece(kPieceSize);
  while (output.out && (in.read(piece.data(), static_cast<std::streamsize>(piece.size())) || in.gcount() > 0)) {
    Interruption::Check();
    output.out.write(piece.data(), in.gcount());
  }
  if (in.bad()) throw CommandError("cannot read \"" + file.string() + "\" to its end");
}

}  // namespace oxaqrycln::oxaqry
