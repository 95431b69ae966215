#include "tools/asphost/server/page_server.h"
// page_server.h includes <winsock2.h>, which must come before <windows.h>.
#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "component/version.h"
#include "tools/asphost/script/page_runner.h"
#include "tools/asphost/script/script_values.h"
#include "tools/asphost/script/site.h"

namespace {

using namespace oxaqrycln;
using namespace oxaqrycln::asphost;

std::atomic<PageServer*> runningServer = nullptr;

BOOL WINAPI StopRunningServer(DWORD) {
  PageServer* const server = runningServer;
  if (server != nullptr) server->Stop();
  return server != nullptr ? TRUE : FALSE;
}

struct CommandLine {
  std::string folder;
  std::vector<std::string> values;
  int sessionMinutes = 20;
  int scriptSeconds = 90;
  int bodyMegabytes = 32;
  int port = 0;
  std::size_t threadCount = 8;
  SiteOptions site;
};

void Declare(CLI::App& app, CommandLine& line) {
  app.set_version_flag("--version", kVersionText);
  app.add_option("FOLDER", line.folder, "Folder with the pages")->required();
  app.add_option("--port", line.port, "TCP port; 0 takes any free one")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app.add_option("--threads", line.threadCount, "Pages that run at once")
      ->check(CLI::Range(1, 100))
      ->capture_default_str();
  app.add_option("--set", line.values, "NAME=VALUE, repeatable: a value of Application that pages find")
      ->allow_extra_args(false);
  app.add_option("--session-timeout", line.sessionMinutes, "Minutes that an unused session lives")
      ->check(CLI::Range(1, 1440))
      ->capture_default_str();
  app.add_option("--sessions", line.site.mostSessions, "Live sessions; one more ends the one that was unused longest")
      ->check(CLI::Range(1, 100000))
      ->capture_default_str();
  app.add_option("--script-timeout", line.scriptSeconds, "Seconds that a page may run")
      ->check(CLI::Range(1, 86400))
      ->capture_default_str();
  app.add_option("--max-body", line.bodyMegabytes, "Megabytes that a request may send")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
  app.footer("Serves on 127.0.0.1 and prints \"listening on ADDRESS:PORT\" when it is ready; ends on Ctrl-C.");
}

void SetValue(Site& site, const std::string& setting) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos || equals == 0) throw std::runtime_error("--set needs NAME=VALUE, not " + setting);
  const OwnedVariant value = TextValue(ToWide(setting.substr(equals + 1), CP_ACP));
  const std::wstring name = ToWide(setting.substr(0, equals), CP_ACP);
  site.application.Change(&site, std::chrono::steady_clock::now(),
                          [&](ValueStore& values) { values.Set(name, value.get()); });
}

SiteOptions OptionsOf(const CommandLine& line) {
  SiteOptions options = line.site;
  const std::filesystem::path folder = std::filesystem::absolute(ToWide(line.folder, CP_ACP)).lexically_normal();
  if (!std::filesystem::is_directory(folder)) throw std::runtime_error(line.folder + " is no folder");
  options.folder = folder.wstring();
  while (options.folder.ends_with(L'\\')) options.folder.pop_back();
  options.sessionTimeOut = std::chrono::minutes(line.sessionMinutes);
  options.scriptTimeOut = std::chrono::seconds(line.scriptSeconds);
  return options;
}

void Serve(const CommandLine& line) {
  Site site(OptionsOf(line));
  for (const std::string& setting : line.values) SetValue(site, setting);
  ConnectionLimits limits;
  limits.longestBody = static_cast<std::size_t>(line.bodyMegabytes) << 20;
  std::mutex outputMutex;
  const auto report = [&](const std::string& failure) {
    const std::lock_guard lock(outputMutex);
    std::cerr << failure + "\n" << std::flush;
  };
  PageServer server(line.port, limits, [&]() -> AnswerFunction {
    return [&, classes = std::make_shared<ClassCache>()](const WebRequest& request) {
      return AnswerRequest(site, *classes, request, report);
    };
  });
  runningServer = &server;
  SetConsoleCtrlHandler(StopRunningServer, TRUE);
  std::cout << "listening on 127.0.0.1:" << server.port() << std::endl;
  server.Run(line.threadCount);
  runningServer = nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Page host: serves a folder of classic pages with the VBScript engine of the system.", "asphost");
  CommandLine line;
  Declare(app, line);
  try {
    app.parse(argc, argv);
    Serve(line);
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const ScriptError& error) {
    std::cerr << "asphost: " << ToBytes(error.text, CP_UTF8) << std::endl;
    return 1;
  } catch (const std::exception& error) {
    std::cerr << "asphost: " << error.what() << std::endl;
    return 1;
  }
}
