#include "tools/oxaqry/cli/archive_query.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/allocations.h"
#include "tests/tools/oxaqry/scripted_archive.h"
#include "tools/oxaqry/cli/errors.h"

namespace oxaqrycln::oxaqry {
namespace {

// Each allocation of a walk over the records fails once.
TEST(ArchiveQuery, ReportsAListThatEndsForLackOfMemory) {
  const std::vector<std::string> names{"A channel with a long name", "Another channel with a long name"};
  ScriptedArchive server({{"GetChannels", ScriptedArchive::Lines(names)}});
  std::stringstream stream;
  const Output output{stream, false, stream, stream, {}, false};
  Settings settings;
  settings.Set("RemoteHosts", server.Hosts(), "test");
  ArchiveQuery archive(settings, output);
  const std::int32_t count = archive.Count(archive->TELOGetChannelsInit(archive.status()));
  bool isOutOfMemory = false;
  bool isWhole = false;
  for (std::int64_t after = 0; after < 1000 && !isWhole; ++after) {
    archive->TELOGetAllArchivesExtFirst();  // back to the first line
    std::vector<std::string> channels;
    channels.reserve(names.size());
    try {
      const AllocationFailure failure(after);
      archive.ForEach(count, "channel", [&](std::int32_t) { channels.push_back(archive->TELOGetChannelsNext()); });
      isWhole = !failure.HasHappened();
      EXPECT_EQ(channels, names) << after;
    } catch (const CommandError& error) {
      isOutOfMemory = isOutOfMemory || std::string(error.what()).starts_with("out of memory");
    } catch (const std::bad_alloc&) {
    }
  }
  EXPECT_TRUE(isWhole);
  EXPECT_TRUE(isOutOfMemory);
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
