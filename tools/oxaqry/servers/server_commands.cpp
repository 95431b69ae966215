#include "tools/oxaqry/cli/command_families.h"

#include <ostream>
#include <thread>
#include <vector>

#include "tools/oxaqry/cli/archive_query.h"
#include "tools/oxaqry/cli/errors.h"
#include "tools/oxaqry/cli/result.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/text.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// Checks under way at a time; each takes a thread.
constexpr std::size_t kChecksAtOnce = 16;

int Live(const Settings& settings, const Output& output) {
  ArchiveQuery archive(settings, output);
  const std::string answer = archive.Answer(archive->LiveCheck());
  return PrintResult(output, {{"answer", ToUtf8(answer)}}, Printable(answer));
}

int Direct(const Settings& settings, const std::string& text, const Output& output) {
  ArchiveQuery archive(settings, output);
  const std::string answer = archive.Answer(archive->DirectQuery(TextFromUtf8(text)));
  return PrintResult(output, {{"lines", JsonList(SplitText(answer, "\r\n"))}}, PrintableLines(answer));
}

struct ServerCheck {
  RequestOutcome request;
  std::string answer;  // or why there is none
  bool answered = false;
};

ServerCheck Check(const Settings& settings, const QueryServer& server, Output output) {
  output.verbose = false;  // shown afterwards, since the checks of several threads run at once
  ServerCheck check;
  try {
    ArchiveQuery archive(settings, output, server.entry);
    check.answer = archive->LiveCheck();
    check.request = archive.LastRequest();
    check.answered = check.request.result == RequestResult::Succeeded;
    const bool isUnreachable = !check.request.wasSent && !check.request.servers.empty();
    const std::string error = isUnreachable ? check.request.servers.back().error : "";
    if (!error.empty()) check.answer = "no connection: " + error;
  } catch (const std::exception& error) {
    check.answer = FromUtf8(error.what()).value_or("");
  }
  return check;
}

// All instances of a thread use one list of servers, so that each server is checked in a thread of its own.
std::vector<ServerCheck> CheckAll(const Settings& settings, const std::vector<QueryServer>& servers,
                                  const Output& output) {
  std::vector<ServerCheck> checks(servers.size());
  for (std::size_t first = 0; first < servers.size(); first += kChecksAtOnce) {
    std::vector<std::jthread> threads;
    for (std::size_t i = first; i < std::min(first + kChecksAtOnce, servers.size()); ++i) {
      threads.emplace_back([&, i] { checks[i] = Check(settings, servers[i], output); });
    }
  }
  return checks;
}

int Servers(const Settings& settings, const Output& output) {
  const std::vector<QueryServer> servers = settings.Servers();
  const std::vector<ServerCheck> checks = CheckAll(settings, servers, output);
  Table table({"#", "Host", "Port", "State", "Time", "Answer"});
  Json list = Json::array();
  std::size_t failed = 0;
  for (std::size_t i = 0; i < servers.size(); ++i) {
    const ServerCheck& check = checks[i];
    const auto milliseconds = check.request.duration.count();
    if (output.verbose) PrintAttempts(check.request, output.err);
    if (!check.answered) ++failed;
    list.push_back({{"number", i + 1},
                    {"host", ToUtf8(servers[i].host)},
                    {"port", servers[i].port},
                    {"answered", check.answered},
                    {check.answered ? "answer" : "error", ToUtf8(check.answer)},
                    {"milliseconds", milliseconds}});
    table.Add({std::to_string(i + 1), Printable(servers[i].host), std::to_string(servers[i].port),
               check.answered ? "answers" : "error", std::to_string(milliseconds) + " ms", Printable(check.answer)});
  }
  PrintResult(output, {{"servers", std::move(list)}}, table.Text(TerminalColumns(output)));
  if (failed == 0) return 0;
  throw CommandError(
      std::to_string(failed) + " of " + std::to_string(servers.size()) +
      " query servers failed the check: the list shows why, and --log-dir keeps a log with more details");
}

int WriteTest(const Settings& settings, const Output& output) {
  const std::string directory = settings.Text("strBlobPathLocal");
  if (directory.empty()) {
    throw CommandError("no blob directory is set: give --blob-local, OXAQRY_BLOB_LOCAL or strBlobPathLocal");
  }
  const auto query = settings.MakeQuery();
  const QueryWatch watch(*query);
  query->WriteTest();
  if (const HandledError& error = watch.LastError(); error.number != 0) {
    throw CommandError(std::to_string(error.number) + " - " + Printable(error.description) +
                       ": check that the directory --blob-local exists and is writable");
  }
  return PrintResult(output, {{"directory", ToUtf8(directory)}, {"writable", true}},
                     "A test file was written into " + Printable(directory) + " and deleted");
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
