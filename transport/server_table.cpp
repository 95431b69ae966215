#include "transport/server_table.h"

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
  if (sickServers_ == SickServers::TriedLast) {
    if (const std::int16_t number = Claim(printOnly, false, sessionId, nullptr); number != 0) return number;
  }
  return Claim(printOnly, true, sessionId, busyReport);
}

std::int16_t ServerTable::Claim(bool printOnly, bool sickToo, std::string_view sessionId, std::string* busyReport) {
  // By number, not by iterator: a call inside a yield may load the table.
  for (std::int32_t number = 1; number <= Count(); ++number) {
    ServerEntry& entry = At(number);
    if (!entry.busy && (entry.print || !printOnly) && (sickToo || !entry.sick)) {
      entry.busy = true;
      entry.since = loop_.clock().Now();
      entry.session = sessionId;
      return static_cast<std::int16_t>(number);
    }
    if (entry.busy && busyReport != nullptr) {
      *busyReport += "\r\nServer #" + std::to_string(number) + " (" + entry.host + ":" + std::to_string(entry.port) +
                     "): in use by session " + entry.session + " since " + entry.since.ToText();
    }
    loop_.RunReady();
  }
  return 0;
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
