#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "component/version.h"
#include "platform/net/socket_address.h"
#include "tools/devserver/archive/sample_archive.h"
#include "tools/devserver/protocol/errors.h"
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

struct CommandLine {
  ServerOptions server;
  std::string database;
  std::string blobDirectory;
  int documentCount = kSampleDocumentCount;
  Accounts accounts;
  bool log = false;
};

std::string FromArgument(const std::string& text) {
  const auto converted = FromUtf8(text);
  if (!converted) throw ServerError("'" + text + "' contains a character outside Windows-1252");
  return *converted;
}

void AddAccount(const std::string& text, Accounts& accounts) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) throw ServerError("account '" + text + "' is not of the form USER:PASSWORD");
  accounts[FromArgument(text.substr(0, colon))] = FromArgument(text.substr(colon + 1));
}

// An option whose values are passed to the reader; a value that it refuses is a usage error.
CLI::Option* AddOption(CLI::App& app, const std::string& name, const std::string& help,
                       const std::function<void(const std::string& text)>& read) {
  const auto readAll = [name, read](const std::vector<std::string>& texts) {
    try {
      std::ranges::for_each(texts, read);
    } catch (const ServerError& error) {
      throw CLI::ValidationError(name, error.what());
    }
  };
  return app.add_option_function<std::vector<std::string>>(name, readAll, help);
}

void Declare(CLI::App& app, CommandLine& line) {
  app.set_version_flag("--version", kVersionText);
  const auto isAddress = [](const std::string& text) {
    return NumericAddress(text) ? "" : "'" + text + "' is not a numeric address to listen on";
  };
  app.add_option("--listen", line.server.address, "Numeric address to listen on")
      ->check(CLI::Validator(isAddress, ""))
      ->capture_default_str();
  app.add_option("--port", line.server.port, "TCP port; 0 takes any free one")->capture_default_str();
  app.add_option("--database", line.database, "SQLite file, created and filled when new (default: in memory)");
  app.add_option(
      "--blob-dir", line.blobDirectory,
      "Directory shared with the web server, created when missing\n(default: DATABASE.blobs; a temporary one "
      "for a database in memory)");
  app.add_option("--documents", line.documentCount, "Sample documents in a new database")
      ->check(CLI::Range(0, 1000000))
      ->capture_default_str();
  AddOption(app, "--account", "USER:PASSWORD, repeatable (default: webuser:secret)", [&](const std::string& text) {
    AddAccount(text, line.accounts);
  })->allow_extra_args(false);
  app.add_option("--max-connections", line.server.maxConnections, "Clients served at once")
      ->check(CLI::Range(1, 10000))
      ->capture_default_str();
  app.add_flag("--log", line.log, "Write each request (without its password) and its status to standard error");
  AddOption(app, "--misbehave",
            "Break the protocol: refuse, delay:MS, silent, cut:N, reset:N,\nbytewise[:MS], count:TEXT, "
            "no-header or never-read",
            [&](const std::string& text) { line.server.misbehaviour = ParseMisbehaviour(text); })
      ->expected(1)
      ->default_str("none");
  app.footer(
      "Prints \"listening on ADDRESS:PORT\" when it is ready; ends on SIGINT or SIGTERM.\n"
      "All its documents are invented. The protocol is described in docs/protocol.md.");
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

int main(int argc, char** argv) {
  CLI::App app("Development archive server: answers the query-server protocol from a small invented archive.",
               "devserver");
  CommandLine line;
  Declare(app, line);
  try {
    app.parse(argc, argv);
    Serve(line);
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    std::cerr << "devserver: " << error.what() << std::endl;
    return 1;
  }
}
