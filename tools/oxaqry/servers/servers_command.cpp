// The command "servers": the state of the pool, one live check of each server.
#include <chrono>
#include <ostream>
#include <thread>
#include <vector>

#include "tools/oxaqry/cli/answers.h"
#include "tools/oxaqry/cli/table.h"
#include "tools/oxaqry/cli/value_json.h"
#include "tools/oxaqry/servers/server_commands.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

// Checks under way at a time; each takes a thread.
constexpr std::size_t kChecksAtOnce = 16;

struct ServerState {
  Answer answer{true, ""};
  std::chrono::milliseconds time{0};
};

ServerState Check(const Settings& settings, const QueryServer& server) {
  ServerState state;
  const auto start = std::chrono::steady_clock::now();
  try {
    const auto query = settings.Connect(server.entry);
    state.answer = CheckLive(*query);
    if (IsNoConnection(state.answer.text)) state.answer.text = "no connection: nothing listens there";
  } catch (const std::exception& error) {
    state.answer = {true, error.what()};
  }
  state.time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
  return state;
}

// A thread has one list of servers, which its first assignment fixes: each server is checked in a thread of its own.
std::vector<ServerState> CheckAll(const Settings& settings, const std::vector<QueryServer>& servers) {
  std::vector<ServerState> states(servers.size());
  for (std::size_t first = 0; first < servers.size(); first += kChecksAtOnce) {
    std::vector<std::jthread> threads;
    for (std::size_t i = first; i < std::min(first + kChecksAtOnce, servers.size()); ++i) {
      threads.emplace_back([&, i] { states[i] = Check(settings, servers[i]); });
    }
  }
  return states;
}

Json JsonState(std::size_t number, const QueryServer& server, const ServerState& state) {
  return {{"number", number},
          {"host", ToUtf8(server.host)},
          {"port", std::stoi(server.port)},
          {"answered", !state.answer.isError},
          {state.answer.isError ? "error" : "answer", ToUtf8(state.answer.text)},
          {"milliseconds", state.time.count()}};
}

}  // namespace

int Servers(const Settings& settings, const Output& output) {
  const std::vector<QueryServer> servers = settings.Servers();
  const std::vector<ServerState> states = CheckAll(settings, servers);
  Table table({"#", "Host", "Port", "State", "Time", "Answer"});
  Json list = Json::array();
  std::size_t failed = 0;
  for (std::size_t i = 0; i < servers.size(); ++i) {
    const ServerState& state = states[i];
    if (state.answer.isError) ++failed;
    list.push_back(JsonState(i + 1, servers[i], state));
    table.Add({std::to_string(i + 1), Printable(servers[i].host), servers[i].port,
               state.answer.isError ? "error" : "answers", std::to_string(state.time.count()) + " ms",
               Printable(state.answer.text)});
  }
  if (output.json) {
    output.out << Json{{"servers", std::move(list)}}.dump(2) << '\n';
  } else {
    table.Print(output.out);
  }
  if (failed == 0) return 0;
  throw CommandError(std::to_string(failed) + " of " + std::to_string(servers.size()) +
                     " query servers failed the check: the list says why, and --log-dir keeps a log that says more");
}

}  // namespace oxaqrycln::oxaqry
