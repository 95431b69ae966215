// The command "write-test": whether the component may write into the local blob directory.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <random>

#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/servers/server_commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

namespace fs = std::filesystem;

// A log directory for one run, gone with the object.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
      path_ = fs::temp_directory_path() / ("oxaqry-" + std::to_string(random()));
      if (fs::create_directory(path_)) return;
    }
    throw CommandError("no temporary directory can be made: give --log-dir");
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  std::string Path() const { return path_.string(); }

 private:
  fs::path path_;
};

std::string ReadFrom(const fs::path& file, std::uintmax_t position) {
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(position));
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// The log lines that the test wrote into the log of its session.
std::string LogOfTest(const Settings& settings, const std::string& logDirectory) {
  const auto query = settings.MakeQuery();
  query->strDebugLogPath = logDirectory;
  const fs::path file = fs::path(logDirectory) / (query->strSessionID + ".log");
  std::error_code absent;
  const std::uintmax_t size = fs::file_size(file, absent);
  query->WriteTest();
  return ReadFrom(file, absent ? 0 : size);
}

// The method has no result: its log says how it went.
void Judge(const std::string& log) {
  constexpr std::string_view kErrorPrefix = "### <ERROR> ";
  const std::size_t error = log.find(kErrorPrefix);
  if (error != std::string::npos) {
    const std::size_t from = error + kErrorPrefix.size();
    throw CommandError(Printable(log.substr(from, log.find_first_of("\r\n", from) - from)) +
                       ": check that the directory --blob-local exists and is writable");
  }
  if (log.find("Deleting test file") == std::string::npos) {
    throw CommandError("the component wrote no log: check that --log-dir is writable and --session a plain file name");
  }
}

}  // namespace

int WriteTest(const Settings& settings, const Output& output) {
  const std::string directory = settings.Text("strBlobPathLocal");
  if (directory.empty()) {
    throw CommandError("no blob directory is set: give --blob-local, OXAQRY_BLOB_LOCAL or strBlobPathLocal");
  }
  const std::string logDirectory = settings.Text("strDebugLogPath");
  Judge(logDirectory.empty() ? LogOfTest(settings, TemporaryDirectory().Path()) : LogOfTest(settings, logDirectory));
  if (output.json) {
    output.out << Json{{"directory", ToUtf8(directory)}, {"writable", true}}.dump(2) << '\n';
  } else {
    output.out << "A test file was written into " << Printable(directory) << " and deleted\n";
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
