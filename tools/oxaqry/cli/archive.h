// archive.h - the archive of a command: opened from the settings, ended by signals, its failures as texts.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_ARCHIVE_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_ARCHIVE_H_

#include <functional>
#include <string>

#include "client/archive.h"
#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/cli/run_environment.h"
#include "tools/oxaqry/cli/settings.h"
#include "tools/oxaqry/cli/value_json.h"

namespace oxaqrycln::oxaqry {

// With --verbose it shows every attempt of every request. Raises CommandError and client::Error.
client::Archive OpenArchive(const client::Settings& settings, const Output& output);
// The same with the query servers of the settings, of which there must be some.
client::Archive OpenArchive(const Settings& settings, const Output& output);

// While it exists, a signal that an Interruption has recorded ends a request of the archive, which then raises
// client::Cancelled.
class InterruptedBySignals {
 public:
  explicit InterruptedBySignals(client::Archive& archive,
                                std::function<void(const client::Progress&)> onProgress = nullptr);
  ~InterruptedBySignals() { archive_.OnProgress(nullptr); }
  InterruptedBySignals(const InterruptedBySignals&) = delete;
  InterruptedBySignals& operator=(const InterruptedBySignals&) = delete;

 private:
  client::Archive& archive_;
};

// What failed, with the servers that were tried; UTF-8.
std::string FailureText(const client::Error& error);
// The same for machines: {"error":TEXT,"kind":"timedOut","attempts":[...]}.
Json FailureJson(const client::Error& error);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_ARCHIVE_H_
