#include "tools/oxaqry/users/archive_names.h"

#include <set>

#include "tools/oxaqry/cli/archive_query.h"
#include "values/code_page.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::int32_t kMostSeconds = 5;

struct ArchiveNames {
  std::set<std::string> channels;
  std::set<std::string> archives;  // each by its name and by its reference, either of which a right may hold
};

// Raises CommandError.
ArchiveNames ReadArchiveNames(Settings settings, const Output& output) {
  constexpr const char* kTimeout = "lngRequestTimeout";
  if (settings.Value(kTimeout).ToLong() > kMostSeconds) {
    settings.Set(kTimeout, std::to_string(kMostSeconds), "the time-out");
  }
  ArchiveNames names;
  ArchiveQuery query(settings, output);
  query.ForEach(query.Count(query->TELOGetAllArchivesExtInit(query.status())), "channel", [&](std::int32_t) {
    Variant channel;
    const std::int32_t archiveCount = query->TELOGetAllArchivesExtNext(&channel).ToLong();
    const std::string place = ToUtf8(channel.ToText());
    names.channels.insert(place);
    query.ForEach(archiveCount, "archive", [&](std::int32_t) {
      const std::string archive = ToUtf8(query->TELOGetAllArchivesExtNextArchive());
      names.archives.insert({archive, "$(#" + place + ")\\" + archive});
    });
  });
  return names;
}

}  // namespace

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
  } catch (const CommandError& error) {
    warnings.push_back("whether the names exist was not checked: " + std::string(error.what()));
  }
  return warnings;
}

}  // namespace oxaqrycln::oxaqry
