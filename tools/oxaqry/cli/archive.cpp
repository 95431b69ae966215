#include "tools/oxaqry/cli/archive.h"

#include <array>
#include <cstdio>
#include <ostream>
#include <utility>

#include "tools/oxaqry/cli/table.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr const char* kHostNotFound = "11001 ";

std::string SecondsText(std::chrono::milliseconds duration) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f s", static_cast<double>(duration.count()) / 1000);
  return text.data();
}

std::string ServerName(const client::Attempt& attempt) {
  return Printable(attempt.host) + ":" + std::to_string(attempt.port);
}

std::string OutcomeText(const client::Attempt& attempt) {
  return attempt.error.empty() ? "answered" : Printable(attempt.error);
}

// The hosts that were tried, when none of their names exists; else "".
std::string UnknownHosts(const client::RequestReport& request) {
  std::string hosts;
  for (const client::Attempt& attempt : request.attempts) {
    if (!attempt.error.starts_with(kHostNotFound)) return "";
    hosts += (hosts.empty() ? "\"" : ", \"") + Printable(attempt.host) + "\"";
  }
  return hosts;
}

template <typename Kind>
bool Is(const client::Error& error) {
  return dynamic_cast<const Kind*>(&error) != nullptr;
}

const char* KindOf(const client::Error& error) {
  if (Is<client::Refused>(error)) return "refused";
  if (Is<client::TimedOut>(error)) return "timedOut";
  if (Is<client::ConnectionFailed>(error)) return "connectionFailed";
  if (Is<client::AllServersBusy>(error)) return "allServersBusy";
  if (Is<client::BadArgument>(error)) return "badArgument";
  if (Is<client::DatabaseFailed>(error)) return "databaseFailed";
  return "failure";
}

}  // namespace

client::Archive OpenArchive(const client::Settings& settings, const Output& output) {
  client::Archive archive(settings);
  if (output.verbose) {
    archive.OnRequest([&err = output.err](const client::RequestReport& request) {
      for (const client::Attempt& attempt : request.attempts) {
        err << "oxaqry: " << ServerName(attempt) << ": " << OutcomeText(attempt) << ", " << attempt.duration.count()
            << " ms\n";
      }
    });
  }
  return archive;
}

client::Archive OpenArchive(const Settings& settings, const Output& output) {
  settings.RequireServers();
  return OpenArchive(settings.ForArchive(), output);
}

InterruptedBySignals::InterruptedBySignals(client::Archive& archive,
                                           std::function<void(const client::Progress&)> onProgress)
    : archive_(archive) {
  archive.OnProgress([&archive, onProgress = std::move(onProgress)](const client::Progress& progress) {
    if (Interruption::Signal() != 0) archive.Cancel();
    if (onProgress) onProgress(progress);
  });
}

std::string FailureText(const client::Error& error) {
  const client::RequestReport& request = error.request();
  const bool isUnanswered = Is<client::TimedOut>(error) || Is<client::ConnectionFailed>(error);
  if (!isUnanswered || request.attempts.empty()) return PrintableLines(error.what());
  if (const std::string hosts = UnknownHosts(request); !hosts.empty()) {
    return "there is no host " + hosts + ": check the list of query servers";
  }
  const bool isBroken = request.wasSent && Is<client::ConnectionFailed>(error);
  std::string text = isBroken ? "the request failed: " : "the query servers did not answer: ";
  text += Printable(error.what());
  const char* separator = "; tried ";
  for (const client::Attempt& attempt : request.attempts) {
    text += separator + ServerName(attempt) + " (" + OutcomeText(attempt) + ", " + SecondsText(attempt.duration) + ")";
    separator = ", ";
  }
  return text;
}

Json FailureJson(const client::Error& error) {
  Json json{{"error", FailureText(error)}, {"kind", KindOf(error)}};
  for (const client::Attempt& attempt : error.request().attempts) {
    json["attempts"].push_back({{"host", attempt.host},
                                {"port", attempt.port},
                                {"error", attempt.error},
                                {"milliseconds", attempt.duration.count()}});
  }
  return json;
}

}  // namespace oxaqrycln::oxaqry
