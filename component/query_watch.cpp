#include "component/query_watch.h"

#include <cstddef>
#include <utility>

#include "component/query_state.h"

namespace oxaqrycln {

QueryWatch::QueryWatch(clsQuery& query) : query_(query), monitor_(query.state_->execution.monitor()) {
  ++monitor_->watchCount;
}

QueryWatch::~QueryWatch() {
  if (--monitor_->watchCount == 0) monitor_->onWait = nullptr;
}

void QueryWatch::OnWait(std::function<void(const RequestProgress&)> call) { monitor_->onWait = std::move(call); }

const HandledError& QueryWatch::LastError() const noexcept { return query_.state_->firstError; }

std::vector<ServerState> QueryWatch::Servers() const {
  std::vector<ServerState> servers;
  ServerTable& table = query_.state_->apartment->servers;
  for (std::int32_t number = 1; number <= table.Count(); ++number) {
    const ServerEntry& entry = table.At(number);
    servers.push_back({entry.host, entry.port, entry.print, entry.busy, entry.since, entry.session, entry.failures});
  }
  return servers;
}

void QueryWatch::UseDatabase(std::shared_ptr<Connection> connection) {
  query_.state_->database = std::move(connection);
}

void QueryWatch::ForgetParentProcess() noexcept { Apartment::Abandon(); }

void QueryWatch::ReuseText(clsQuery& query, Variant& text) noexcept {
  constexpr std::size_t kLongest = 4096;
  std::string& spare = query.state_->spareText;
  if (text.SwapText(spare) && spare.capacity() > kLongest) spare = std::string();
}

}  // namespace oxaqrycln
