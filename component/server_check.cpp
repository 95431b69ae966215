#include "component/server_check.h"

#include <cstddef>
#include <exception>
#include <thread>

#include "component/query_watch.h"
#include "platform/threads/background_thread.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

// The variables of the page's instance that the instance of each check copies.
struct PageSettings {
  explicit PageSettings(const clsQuery& query)
      : user(query.strTELOUser),
        password(query.strTELOPwd),
        session(query.strSessionID),
        logPath(query.strDebugLogPath),
        webUser(query.strUserName),
        webUserAddress(query.strUserIP),
        webUserLogOn(query.datUserLoginTime),
        timeout(query.lngRequestTimeout) {}

  void GiveTo(clsQuery& query) const {
    query.strTELOUser = user;
    query.strTELOPwd = password;
    query.strSessionID = session;
    query.strDebugLogPath = logPath;
    query.strUserName = webUser;
    query.strUserIP = webUserAddress;
    query.datUserLoginTime = webUserLogOn;
    query.lngRequestTimeout = timeout;
  }

  std::string user;
  std::string password;
  std::string session;
  std::string logPath;
  std::string webUser;
  std::string webUserAddress;
  DateTime webUserLogOn;
  std::int32_t timeout;
};

std::string TextOf(const HandledError& error) { return std::to_string(error.number) + " - " + error.description; }

// On a thread without servers.
void Check(const PageSettings& settings, const std::string& entry, const std::function<bool()>& isCancelled,
           ServerCheck& check) {
  clsQuery query;
  QueryWatch watch(query);
  watch.OnWait([&](const RequestProgress& /*bytes*/) {
    if (isCancelled()) watch.Cancel();
  });
  settings.GiveTo(query);
  query.RemoteHosts(entry);
  const std::vector<ServerState> servers = watch.Servers();
  if (servers.size() != 1 || !query.Init(false)) {
    check.text = TextOf(watch.LastError());
    return;
  }
  check.host = servers[0].host;
  check.port = servers[0].port;
  if (isCancelled()) watch.Cancel();
  check.text = query.LiveCheck();
  const RequestOutcome& outcome = watch.LastRequest();
  check.isAlive = outcome.result == RequestResult::Succeeded;
  check.duration = outcome.duration;
  // Where no connection was made, the last attempt says more than the text for the page.
  if (!check.isAlive && !outcome.wasSent && !outcome.servers.empty() && !outcome.servers.back().error.empty()) {
    check.text = "no connection: " + outcome.servers.back().error;
  }
}

// Threads that have ended before their results go out of scope.
struct Threads {
  ~Threads() { Join(); }
  void Join() noexcept {
    for (std::thread& thread : list) thread.join();
    list.clear();
  }
  std::vector<std::thread> list;
};

}  // namespace

std::vector<ServerCheck> CheckServers(const clsQuery& query, std::string_view hosts,
                                      const std::function<bool()>& isCancelled) {
  constexpr std::size_t kAtOnce = 16;
  if (hosts.empty()) return {};
  const std::vector<std::string_view> entries = Split(hosts, '|');
  std::vector<ServerCheck> checks(entries.size());
  const PageSettings settings(query);
  Threads threads;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (threads.list.size() == kAtOnce) threads.Join();
    ServerCheck& check = checks[i];
    check.host = entries[i].substr(0, entries[i].find(','));
    threads.list.push_back(StartBackgroundThread([&, entry = std::string(entries[i])] {
      try {
        Check(settings, entry, isCancelled, check);
      } catch (const std::exception& error) {
        check.text = error.what();
      }
    }));
  }
  threads.Join();
  return checks;
}

}  // namespace oxaqrycln
