#include "tools/oxaqry/cli/archive_query.h"

#include <array>
#include <cstdio>
#include <ostream>

#include "tools/oxaqry/cli/table.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::int32_t kOutOfMemory = 7;
constexpr const char* kHostNotFound = "11001 ";

// The outcome of one attempt; only the last one ends as the request does.
std::string OutcomeText(const ServerAttempt& attempt, RequestResult result) {
  if (!attempt.error.empty()) return Printable(attempt.error);
  switch (result) {
    case RequestResult::Succeeded:
      return "answered";
    case RequestResult::Refused:
      return "refused";
    case RequestResult::Cancelled:
      return "cancelled";
    case RequestResult::Failed:
      return "failed";
    default:
      return "no answer";
  }
}

std::string SecondsText(std::chrono::milliseconds duration) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f s", static_cast<double>(duration.count()) / 1000);
  return text.data();
}

std::string ServerName(const ServerAttempt& attempt) {
  return Printable(attempt.host) + ":" + std::to_string(attempt.port);
}

// The hosts that were tried, when none of their names exists; else "".
std::string UnknownHosts(const RequestOutcome& request) {
  std::string hosts;
  for (const ServerAttempt& attempt : request.servers) {
    if (!attempt.error.starts_with(kHostNotFound)) return "";
    hosts += (hosts.empty() ? "\"" : ", \"") + Printable(attempt.host) + "\"";
  }
  return hosts;
}

}  // namespace

void PrintAttempts(const RequestOutcome& request, std::ostream& out) {
  for (const ServerAttempt& attempt : request.servers) {
    out << "oxaqry: " << ServerName(attempt) << ": " << OutcomeText(attempt, request.result) << ", "
        << attempt.duration.count() << " ms\n";
  }
}

std::string FailureText(const RequestOutcome& request, const std::string& errorText) {
  if (request.result <= RequestResult::Refused) return Printable(errorText);
  const bool isBroken = request.wasSent && request.result != RequestResult::TimedOut;
  if (const std::string hosts = UnknownHosts(request); !hosts.empty()) {
    return "there is no host " + hosts + ": check the list of query servers";
  }
  std::string text = isBroken ? "the request failed: " : "the query servers did not answer: ";
  text += Printable(errorText);
  const char* separator = "; tried ";
  for (const ServerAttempt& attempt : request.servers) {
    text += separator + ServerName(attempt) + " (" + OutcomeText(attempt, request.result) + ", " +
            SecondsText(attempt.duration) + ")";
    separator = ", ";
  }
  return text;
}

ArchiveQuery::ArchiveQuery(const Settings& settings, const Output& output)
    : ArchiveQuery(settings, output, settings.ServerList()) {}

ArchiveQuery::ArchiveQuery(const Settings& settings, const Output& output, std::string_view servers)
    : output_(output), query_(settings.MakeQuery()), watch_(*query_) {
  query_->RemoteHosts(servers);
  if (!query_->Init(false)) {
    throw CommandError("the component could not be initialised: " + Printable(watch_.LastError().description));
  }
}

void ArchiveQuery::Watch(const Interruption& interruption, std::function<void(const RequestProgress&)> onProgress) {
  interruption_ = &interruption;
  watch_.OnWait([this, onProgress = std::move(onProgress)](const RequestProgress& progress) {
    if (interruption_->Signal() != 0) watch_.Cancel();
    if (onProgress) onProgress(progress);
  });
}

std::int32_t ArchiveQuery::Count(const Variant& result) {
  // The archive properties are a text.
  const std::int32_t count = result.type() == Variant::Type::String ? 0 : result.ToLong();
  CheckRequest(count >= 0, status_.ToText());
  return count;
}

std::string ArchiveQuery::Answer(std::string text) {
  CheckRequest(LastRequest().result == RequestResult::Succeeded, text);
  return text;
}

void ArchiveQuery::CheckMemory() const {
  if (watch_.LastError().number == kOutOfMemory) throw CommandError("out of memory: the answer is not complete");
}

void ArchiveQuery::CheckRecord(const char* what, std::int32_t number) const {
  CheckMemory();
  if (watch_.LastError().number == 0) return;
  throw CommandError(std::string(what) + " " + std::to_string(number) +
                     " of the answer is malformed: see the log (--log-dir) and ask the query server's operator");
}

void ArchiveQuery::CheckRequest(bool succeeded, const std::string& errorText) const {
  if (output_.verbose) PrintAttempts(LastRequest(), output_.err);
  if (!succeeded && interruption_ != nullptr) interruption_->Check();
  CheckMemory();
  if (succeeded) return;
  if (!errorText.empty()) throw CommandError(FailureText(LastRequest(), errorText));
  const HandledError& error = watch_.LastError();
  const std::string reason =
      error.number == 0 ? "" : ": " + std::to_string(error.number) + " - " + Printable(error.description);
  throw CommandError("the query server gave no usable answer" + reason + " (--log-dir keeps a log of the request)");
}

}  // namespace oxaqrycln::oxaqry
