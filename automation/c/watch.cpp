// The functions that watch and control the requests of a query.
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/c/queries.h"
#include "automation/c/values.h"
#include "component/server_check.h"
#include "values/code_page.h"

using namespace oxaqrycln;
using namespace oxaqrycln::c;

namespace {

// In the order of RequestResult.
static_assert(static_cast<int>(RequestResult::None) == OXAQRY_NO_REQUEST);
static_assert(static_cast<int>(RequestResult::Succeeded) == OXAQRY_SUCCEEDED);
static_assert(static_cast<int>(RequestResult::Refused) == OXAQRY_REFUSED);
static_assert(static_cast<int>(RequestResult::TimedOut) == OXAQRY_TIMED_OUT);
static_assert(static_cast<int>(RequestResult::ConnectionFailed) == OXAQRY_CONNECTION_FAILED);
static_assert(static_cast<int>(RequestResult::AllBusy) == OXAQRY_ALL_BUSY);
static_assert(static_cast<int>(RequestResult::Cancelled) == OXAQRY_CANCELLED);
static_assert(static_cast<int>(RequestResult::Failed) == OXAQRY_FAILED);

// Runs body(entry) for the entry at an index of a list.
template <typename List, typename Body>
std::int32_t WithEntry(const List& list, std::int32_t index, std::string_view what, Body&& body) {
  if (index < 0 || static_cast<std::size_t>(index) >= list.size()) {
    return Fail(OXAQRY_E_ARGUMENT, {"there is no ", what, " ", std::to_string(index)});
  }
  return body(list[static_cast<std::size_t>(index)]);
}

template <typename Body>
std::int32_t WithServer(oxaqry_query* query, std::int32_t index, Body&& body) noexcept {
  return WithQuery(query, [&](Query& source) {
    return WithEntry(source.watch().Servers(), index, "server",
                     [&](const ServerState& server) { return body(source, server); });
  });
}

}  // namespace

int32_t oxaqry_outcome(oxaqry_query* query, int32_t* kind, int64_t* milliseconds, int32_t* was_sent,
                       int32_t* attempt_count) {
  return WithQuery(query, [&](Query& source) {
    const RequestOutcome& outcome = source.watch().LastRequest();
    Give(kind, outcome.result);
    Give(milliseconds, outcome.duration.count());
    Give(was_sent, outcome.wasSent ? 1 : 0);
    Give(attempt_count, outcome.servers.size());
    return OXAQRY_OK;
  });
}

int32_t oxaqry_request_number(oxaqry_query* query, int64_t* number) {
  return WithQuery(query, [&](Query& source) -> std::int32_t {
    if (number == nullptr) return IsNull("number");
    *number = source.watch().LastRequest().number;
    return OXAQRY_OK;
  });
}

int32_t oxaqry_outcome_text(oxaqry_query* query, const char** text, size_t* length) {
  return WithQuery(query, [&](Query& source) {
    GiveText(text, length, source.Keep(0, source.watch().LastRequest().text));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_attempt(oxaqry_query* query, int32_t index, const char** host, size_t* host_length, int32_t* port,
                       const char** error, size_t* error_length, int64_t* milliseconds) {
  return WithQuery(query, [&](Query& source) {
    const auto give = [&](const ServerAttempt& attempt) {
      GiveText(host, host_length, source.Keep(0, attempt.host));
      Give(port, attempt.port);
      GiveText(error, error_length, source.Keep(1, attempt.error));
      Give(milliseconds, attempt.duration.count());
      return OXAQRY_OK;
    };
    return WithEntry(source.watch().LastRequest().servers, index, "attempt", give);
  });
}

int32_t oxaqry_handled_error(oxaqry_query* query, int32_t* number, const char** text, size_t* length) {
  return WithQuery(query, [&](Query& source) {
    const HandledError& error = source.watch().LastError();
    Give(number, error.number);
    GiveText(text, length, source.Keep(0, error.number == 0 ? std::string_view() : error.description));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_progress(oxaqry_query* query, int64_t* sent, int64_t* received, int64_t* announced) {
  const SharedHandle handle = FindShared(query, HandleKind::Query);
  if (handle.shared == nullptr) return handle.code;
  Give(sent, handle.shared->sent.load(std::memory_order_relaxed));
  Give(received, handle.shared->received.load(std::memory_order_relaxed));
  Give(announced, handle.shared->announced.load(std::memory_order_relaxed));
  return OXAQRY_OK;
}

int32_t oxaqry_cancel(oxaqry_query* query) {
  const SharedHandle handle = FindShared(query, HandleKind::Query);
  if (handle.shared == nullptr) return handle.code;
  handle.shared->cancelled.store(handle.generation, std::memory_order_relaxed);
  return OXAQRY_OK;
}

int32_t oxaqry_resume(oxaqry_query* query) {
  const SharedHandle handle = FindShared(query, HandleKind::Query);
  if (handle.shared == nullptr) return handle.code;
  std::uint32_t cancelled = handle.generation;
  handle.shared->cancelled.compare_exchange_strong(cancelled, 0, std::memory_order_relaxed);
  return OXAQRY_OK;
}

int32_t oxaqry_server_count(oxaqry_query* query, int32_t* count) {
  return WithQuery(query, [&](Query& source) -> std::int32_t {
    if (count == nullptr) return IsNull("count");
    *count = static_cast<std::int32_t>(source.watch().Servers().size());
    return OXAQRY_OK;
  });
}

int32_t oxaqry_server(oxaqry_query* query, int32_t index, const char** host, size_t* host_length, int32_t* port,
                      int32_t* takes_print_requests, int32_t* is_busy, int64_t* since, const char** session,
                      size_t* session_length) {
  return WithServer(query, index, [&](Query& source, const ServerState& server) {
    GiveText(host, host_length, source.Keep(0, server.host));
    Give(port, server.port);
    Give(takes_print_requests, server.takesPrintRequests ? 1 : 0);
    Give(is_busy, server.isBusy ? 1 : 0);
    Give(since, server.isBusy ? server.since.seconds() : 0);
    GiveText(session, session_length, source.Keep(1, server.isBusy ? server.session : std::string_view()));
    return OXAQRY_OK;
  });
}

int32_t oxaqry_server_failures(oxaqry_query* query, int32_t index, int32_t* failures) {
  return WithServer(query, index, [&](Query& /*source*/, const ServerState& server) -> std::int32_t {
    if (failures == nullptr) return IsNull("failures");
    *failures = server.failures;
    return OXAQRY_OK;
  });
}

int32_t oxaqry_check_servers(oxaqry_query* query, const char* hosts, size_t length, oxaqry_rows** rows) {
  return WithQuery(query, [&](Query& source) -> std::int32_t {
    if (rows == nullptr) return IsNull("rows");
    if (hosts == nullptr && length != 0) return IsNull("hosts");
    const std::string_view utf8(hosts, length);
    const std::optional<std::string> list = FromUtf8(utf8);
    if (!list) return IsBadText(utf8);
    auto made = std::make_unique<Rows>(source.rowMemory());
    made->columnCount = 5;
    for (const ServerCheck& check : CheckServers(source.instance(), *list, [&] { return source.IsCancelled(); })) {
      made->Add(check.host, true);
      made->Add(std::to_string(check.port), true);
      made->Add(check.isAlive ? "1" : "0", true);
      made->Add(check.text, true);
      made->Add(std::to_string(check.duration.count()), true);
      ++made->rowCount;
    }
    return HandOut(std::move(made), rows);
  });
}

int32_t oxaqry_set_sick_servers(oxaqry_query* query, int32_t policy) {
  return WithQuery(query, [&](Query& target) -> std::int32_t {
    if (policy != OXAQRY_CLAIMED_IN_ORDER && policy != OXAQRY_TRIED_LAST) {
      return Fail(OXAQRY_E_ARGUMENT, {"there is no such policy"});
    }
    target.watch().SetSickServers(policy == OXAQRY_TRIED_LAST ? SickServers::TriedLast : SickServers::ClaimedInOrder);
    return OXAQRY_OK;
  });
}
