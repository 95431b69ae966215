#include "transport/server_table.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

#include "support/text_helpers.h"
#include "support/trap.h"
#include "values/errors.h"
#include "values/text_parts.h"
#include "values/variant.h"

namespace oxaqrycln {
namespace {

constexpr std::int64_t kStaleMinutes = 5;
constexpr std::size_t kMostServers = 32767;
constexpr std::chrono::seconds kFirstSickTime(30);
constexpr std::chrono::minutes kLongestSickTime(5);
constexpr std::int32_t kMostDoublings = 4;

ServerEntry ParseEntry(std::string_view text, const SessionLog& log) {
  const auto fields = Split(text, ',');
  if (fields.size() < 2) throw RuntimeError(error::kSubscriptOutOfRange);
  ServerEntry entry;
  entry.host = fields[0];
  entry.port = TextToLong(fields[1]);
  if (fields.size() > 2) entry.print = fields[2] == "1";
  if (fields.size() > 3) entry.user = fields[3];
  // A password that cannot be decoded is logged and counts as none.
  if (fields.size() > 4) {
    entry.password = Trap(log, "Decode", std::string(), [&](std::string& result) { result = Decode(fields[4]); });
  }
  return entry;
}

std::int64_t Minute(DateTime time) noexcept {
  const std::int64_t seconds = time.seconds();
  return seconds / 60 - (seconds % 60 < 0 ? 1 : 0);
}

}  // namespace

void ServerTable::Load(std::string_view hosts, const SessionLog& log) {
  if (isSet_) return;
  const auto texts = Split(hosts, '|');
  if (texts.size() > kMostServers) throw RuntimeError(error::kOverflow);
  std::vector<ServerEntry> entries;
  entries.reserve(texts.size());
  for (const std::string_view text : texts) {
    entries.push_back(ParseEntry(text, log));
    const ServerEntry& entry = entries.back();
    log.Write(bytInfo, "Setting query server #", entries.size(), ": ", entry.host, " - ", entry.port, " - ",
              entry.print ? "1" : "0");
  }
  entries_ = std::move(entries);
  isSet_ = true;
}

std::int16_t ServerTable::GetFreeServer(bool printOnly, std::string_view sessionId, std::string* busyReport) {
  if (busyReport != nullptr) busyReport->clear();
  // By number, not by iterator: a call inside a yield may load the table.
  for (std::int32_t number = 1; number <= Count(); ++number) {
    const ServerEntry& entry = At(number);
    if (!entry.busy && (entry.print || !printOnly)) return Claim(number, sessionId);
    if (entry.busy && busyReport != nullptr) {
      *busyReport += "\r\nServer #" + std::to_string(number) + " (" + entry.host + ":" + std::to_string(entry.port) +
                     "): in use by session " + entry.session + " since " + entry.since.ToText();
    }
    loop_.RunReady();
  }
  return 0;
}

std::int16_t ServerTable::GetHealthyServer(bool printOnly, std::string_view sessionId,
                                           std::span<const std::int16_t> tried) {
  const Clock::SteadyPoint now = loop_.clock().SteadyNow();
  std::int32_t soonest = 0;
  for (std::int32_t number = 1; number <= Count(); ++number) {
    if (!IsFree(number, printOnly, tried)) continue;
    const ServerEntry& entry = At(number);
    if (entry.failures == 0 || entry.sickUntil <= now) return Claim(number, sessionId);
    if (soonest == 0 || entry.sickUntil < At(soonest).sickUntil) soonest = number;
  }
  return soonest == 0 ? std::int16_t{0} : Claim(soonest, sessionId);
}

std::int32_t ServerTable::FreeCount(bool printOnly, std::span<const std::int16_t> tried) const {
  std::int32_t count = 0;
  for (std::int32_t number = 1; number <= Count(); ++number) count += IsFree(number, printOnly, tried) ? 1 : 0;
  return count;
}

bool ServerTable::IsFree(std::int32_t number, bool printOnly, std::span<const std::int16_t> tried) const {
  const ServerEntry& entry = entries_[static_cast<std::size_t>(number - 1)];
  return !entry.busy && (entry.print || !printOnly) && std::ranges::find(tried, number) == tried.end();
}

std::int16_t ServerTable::Claim(std::int32_t number, std::string_view sessionId) {
  ServerEntry& entry = At(number);
  entry.busy = true;
  entry.since = loop_.clock().Now();
  entry.session = sessionId;
  return static_cast<std::int16_t>(number);
}

Clock::Duration ServerTable::RecordFailure(std::int16_t number) {
  ServerEntry& entry = At(number);
  const Clock::Duration time =
      std::min<Clock::Duration>(kFirstSickTime * (1 << std::min(entry.failures, kMostDoublings)), kLongestSickTime);
  ++entry.failures;
  entry.sickUntil = loop_.clock().SteadyNow() + time;
  return time;
}

std::int16_t ServerTable::CheckReleaseBusyServer() {
  for (std::int32_t number = 1; number <= Count(); ++number) {
    ServerEntry& entry = At(number);
    if (entry.busy && Minute(loop_.clock().Now()) - Minute(entry.since) > kStaleMinutes) {
      entry.busy = false;
      return static_cast<std::int16_t>(number);
    }
    loop_.RunReady();
  }
  return 0;
}

ServerEntry& ServerTable::At(std::int32_t number) {
  if (number < 1 || number > Count()) throw RuntimeError(error::kSubscriptOutOfRange);
  return entries_[static_cast<std::size_t>(number - 1)];
}

}  // namespace oxaqrycln
