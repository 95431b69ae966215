#include <algorithm>

#include "client/archive.h"
#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/command_families.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"

namespace oxaqrycln::oxaqry {
namespace {

int Live(const Settings& settings, const Output& output) {
  const std::string answer = OpenArchive(settings, output).Live();
  return PrintResult(output, {{"answer", answer}}, Printable(answer));
}

int Direct(const Settings& settings, const std::string& text, const Output& output) {
  const std::vector<std::string> lines = OpenArchive(settings, output).Direct(text);
  std::string shown;
  for (const std::string& line : lines) shown += Printable(line) + '\n';
  return PrintResult(output, {{"lines", lines}}, shown);
}

int Servers(const Settings& settings, const Output& output) {
  const std::vector<client::ServerHealth> servers = OpenArchive(settings, output).Health();
  Table table({"#", "Host", "Port", "State", "Time", "Answer"});
  Json list = Json::array();
  for (const client::ServerHealth& server : servers) {
    const std::string number = std::to_string(list.size() + 1);
    list.push_back({{"number", list.size() + 1},
                    {"host", server.host},
                    {"port", server.port},
                    {"answered", server.isAlive},
                    {server.isAlive ? "answer" : "error", server.text},
                    {"milliseconds", server.duration.count()}});
    table.Add(Cells({number, server.host, std::to_string(server.port), server.isAlive ? "answers" : "error",
                     std::to_string(server.duration.count()) + " ms", server.text}));
  }
  PrintResult(output, {{"servers", std::move(list)}}, table.Text(TerminalColumns(output)));
  const auto alive = static_cast<std::size_t>(std::ranges::count_if(servers, &client::ServerHealth::isAlive));
  if (alive == servers.size()) return 0;
  throw CommandError(
      std::to_string(servers.size() - alive) + " of " + std::to_string(servers.size()) +
      " query servers failed the check: the list shows why, and --log-dir keeps a log with more details");
}

int WriteTest(const Settings& settings, const Output& output) {
  const client::Settings own = settings.ForArchive();
  if (own.blobLocal.empty()) settings.RequireBlobDirectory();
  try {
    client::Archive archive(own);
    archive.TestBlobDirectory();
  } catch (const client::Error& error) {
    throw CommandError(std::string(error.what()) + ": check that the directory --blob-local exists and is writable");
  }
  return PrintResult(output, {{"directory", own.blobLocal}, {"writable", true}},
                     "A test file was written into " + Printable(own.blobLocal) + " and deleted");
}

}  // namespace

void AddServerCommands(CommandParser& parser) {
  CLI::App& app = parser.app();
  parser.AddQuery(app, "live", "ask whether a query server answers", "Example:\n  oxaqry live --hosts localhost,2001",
                  Live);
  parser.AddQuery(app, "servers", "check every query server of the list",
                  "Example:\n  oxaqry servers --hosts 'localhost,2001|localhost,2002' --timeout 5", Servers);
  const auto [direct, text] = parser.AddQuery(
      app, "direct", "send a complete command part and print the answer",
      "Example:\n  oxaqry direct '^GetArchiveProperties^,^Mail^,^Inbox^' --hosts localhost,2001", Direct);
  direct->add_option("TEXT", *text, "the command part, \"^Command^,^parameter^\"")->required();
  parser.AddQuery(app, "write-test", "write and delete a test file in the local blob directory",
                  "Example:\n  oxaqry write-test --blob-local /srv/blobs", WriteTest);
}

}  // namespace oxaqrycln::oxaqry
