#include <atomic>
#include <csignal>
#include <iostream>
#include <string>
#include <string_view>

#include "tools/devserver/archive/sample_archive.h"
#include "tools/devserver/command_line.h"
#include "tools/devserver/protocol/request.h"
#include "tools/devserver/server/server.h"
#include "tools/devserver/server/service.h"
#include "values/code_page.h"

namespace {

using namespace oxaqrycln;
using namespace oxaqrycln::devserver;

std::atomic<Server*> runningServer = nullptr;

extern "C" void StopRunningServer(int) {
  if (Server* server = runningServer) server->Stop();
}

std::string Outcome(const Reply& reply) {
  if (reply.upload != nullptr) return "receiving " + std::to_string(reply.upload->missing()) + " bytes";
  const std::string status = Printable(reply.text.substr(0, reply.text.find("\r\n")));
  if (reply.file != nullptr) return status + " (a file of " + std::to_string(reply.file->Size()) + " bytes)";
  return status + (reply.isRaw ? " (not sent)" : " (" + std::to_string(reply.text.size()) + " bytes)");
}

void Log(std::string_view request, const Reply& reply) {
  const auto fields = SplitRequest(request).fields;
  std::string line;
  for (std::size_t index = 0; index < fields.size(); ++index) {
    if (index != 2) line += "[" + Printable(fields[index]) + "] ";
  }
  // Without fields, the place of the password is unknown.
  if (fields.empty()) line = "[no request, " + std::to_string(request.size()) + " bytes] ";
  std::cerr << ToUtf8(line + Outcome(reply) + "\n") << std::flush;
}

BlobDirectory OpenBlobDirectory(const CommandLine& line) {
  if (!line.blobDirectory.empty()) return BlobDirectory::At(line.blobDirectory);
  return line.database.empty() ? BlobDirectory::Private() : BlobDirectory::At(line.database + ".blobs");
}

void Serve(const CommandLine& line) {
  const Accounts accounts = line.accounts.empty() ? Accounts{{"webuser", "secret"}} : line.accounts;
  Service service(OpenArchive(line.database, line.documentCount), accounts, OpenBlobDirectory(line));
  Server server(line.server, [&](std::string_view request) {
    Reply reply = service.Answer(request);
    if (line.log) Log(request, reply);
    return reply;
  });
  runningServer = &server;
  std::signal(SIGINT, StopRunningServer);
  std::signal(SIGTERM, StopRunningServer);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);  // writing beyond a limit on file sizes then fails like a full disk
  const std::string& address = line.server.address;
  const bool isVersion6 = address.find(':') != std::string::npos;
  std::cout << "blob directory " << service.blobs().path() << std::endl;
  std::cout << "listening on " << (isVersion6 ? "[" + address + "]" : address) << ":" << server.port() << std::endl;
  server.Run();
  runningServer = nullptr;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  CLI::App app("Development archive server: answers the query-server protocol from a small invented archive.",
               "devserver");
  CommandLine line;
  AddOptions(app, line);
  if (const auto status = Parse(app, argumentCount, arguments)) return *status;
  try {
    Serve(line);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "devserver: " << error.what() << std::endl;
    return 1;
  }
}
