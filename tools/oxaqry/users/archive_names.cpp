#include "tools/oxaqry/users/archive_names.h"

#include <algorithm>
#include <chrono>
#include <set>

#include "tools/oxaqry/cli/archive.h"
#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::chrono::seconds kMostTime{5};

struct ArchiveNames {
  std::set<std::string> channels;
  std::set<std::string> archives;  // each by its name and by its reference, either of which a right may hold
};

std::string Reference(const std::string& channel, const std::string& archive) {
  return "$(#" + channel + ")\\" + archive;
}

// Raises CommandError and client::Error.
ArchiveNames ReadArchiveNames(const Settings& settings, const Output& output) {
  settings.RequireServers();
  client::Settings own = settings.ForArchive();
  own.timeout = std::min(own.timeout, kMostTime);
  client::Archive archive = OpenArchive(own, output);
  ArchiveNames names;
  for (const client::Channel& channel : archive.Archives()) {
    names.channels.insert(channel.name);
    for (const client::ArchiveEntry& entry : channel.archives) {
      names.archives.insert({entry.name, Reference(channel.name, entry.name)});
    }
  }
  return names;
}

}  // namespace

std::string ArchiveEntryOf(const std::string& text) {
  const std::vector<std::string> parts = SplitName(text);
  const bool isName = parts.size() == 2 && !parts[0].empty() && !parts[1].empty();
  return isName && !text.starts_with("$(#") ? Reference(parts[0], parts[1]) : text;
}

std::vector<std::string> UnknownNameWarnings(const Settings& settings, const std::vector<std::string>& channels,
                                             const std::vector<std::string>& archives, const Output& output) {
  if (settings.Text("RemoteHosts").empty() || (channels.empty() && archives.empty())) return {};
  std::vector<std::string> warnings;
  try {
    const ArchiveNames names = ReadArchiveNames(settings, output);
    const auto compare = [&](const char* kind, const std::vector<std::string>& wanted,
                             const std::set<std::string>& known) {
      for (const std::string& name : wanted) {
        if (known.contains(name)) continue;
        warnings.push_back("the query servers list no " + std::string(kind) + " \"" + name + "\"");
      }
    };
    compare("channel", channels, names.channels);
    compare("archive", archives, names.archives);
  } catch (const client::Error& error) {
    warnings.push_back("whether the names exist was not checked: " + FailureText(error));
  } catch (const CommandError& error) {
    warnings.push_back("whether the names exist was not checked: " + std::string(error.what()));
  }
  return warnings;
}

}  // namespace oxaqrycln::oxaqry
