// The client layer against the development archive server.
#include "client/archive.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <fstream>
#include <thread>

#include "client/users.h"
#include "tests/support/in_own_thread.h"
#include "tests/support/scripted_server.h"
#include "tests/support/temporary_directory.h"
#include "tests/tools/devserver/wire_client.h"
#include "tools/devserver/archive/sample_archive.h"

namespace oxaqrycln::client {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class SampleServer : public devserver::RunningServer {
 public:
  SampleServer() : RunningServer({}, "none", devserver::kSampleDocumentCount) {}
  Settings ForIt() const {
    Settings settings;
    settings.hosts = "127.0.0.1," + std::to_string(port());
    settings.user = "webuser";
    settings.password = "secret";
    settings.blobLocal = BlobPath("").parent_path().string();
    return settings;
  }
};

// Runs the body with an archive on a thread of its own, which has no servers yet.
template <typename Body>
void WithArchive(const Settings& settings, Body&& body) {
  testing::InOwnThread([&] {
    try {
      Archive archive(settings);
      body(archive);
    } catch (const Error& error) {
      ADD_FAILURE() << error.what();
    }
  });
}

// The type of error that a call raises, and its text.
template <typename Kind, typename Call>
std::string Raised(Call&& call) {
  try {
    call();
  } catch (const Kind& error) {
    return error.what();
  } catch (const std::exception& error) {
    ADD_FAILURE() << "another error: " << error.what();
    return {};
  }
  ADD_FAILURE() << "no error";
  return {};
}

std::vector<std::string> ValuesOf(const HitList& hits, std::string_view column) {
  std::vector<std::string> values;
  for (const Hit& hit : hits) values.emplace_back(hit.Value(hits.Column(column)));
  return values;
}

std::string TextOfFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Archive, ListsWhatTheServerOffersInUtf8) {
  const SampleServer server;
  WithArchive(server.ForIt(), [](Archive& archive) {
    EXPECT_EQ(archive.Channels().at(0).name, "Büro");
    const std::vector<Channel> channels = archive.Archives();
    EXPECT_EQ(channels.at(0).archives.at(1).comment, "Letters sent");
    EXPECT_THAT(channels.back().archives, IsEmpty());
    EXPECT_THAT(archive.Formats("Mail", "Inbox"), Contains("Full text"));
    EXPECT_TRUE(archive.Properties("Büro", "Protokolle").canCreate);
    const std::vector<Mask> masks = archive.Masks("Finance", "Orders");
    ASSERT_THAT(masks, SizeIs(2));
    EXPECT_TRUE(masks[1].fields.at(1).isListOnly);
    EXPECT_EQ(masks[0].fields.at(0).width, 40);
  });
}

TEST(HitList, OwnsItsRowsAndSortsThem) {
  const SampleServer server;
  WithArchive(server.ForIt(), [](Archive& archive) {
    HitList hits = archive.Search({.query = "copper", .max = 10, .layout = "2"});
    ASSERT_THAT(hits, SizeIs(10));
    EXPECT_GT(hits.total(), 10);
    EXPECT_EQ(hits.layout().at(0), std::pair(std::string("12"), std::string("Customer")));
    archive.Channels();  // replaces the records of the class
    const std::vector<std::string> before = ValuesOf(hits, "title");
    std::vector<std::string> expected = before;
    hits.Sort(hits.Column("Title"));
    std::ranges::sort(expected);
    EXPECT_EQ(ValuesOf(hits, "Title"), expected);
    hits.Sort(hits.Column("Title"), Order::Descending);
    std::ranges::reverse(expected);
    EXPECT_EQ(ValuesOf(hits, "Title"), expected);
    const auto amounts = [&] {
      std::vector<double> numbers;
      for (std::string amount : ValuesOf(hits, "Amount")) {
        std::ranges::replace(amount, ',', '.');
        if (!amount.empty()) numbers.push_back(std::stod(amount));
      }
      return numbers;
    };
    hits.Sort(hits.Column("Amount"));
    EXPECT_TRUE(std::ranges::is_sorted(amounts()));
    const std::string second = hits[1].document.id;
    hits.Remove(0);
    EXPECT_EQ(hits[0].document.id, second);
    EXPECT_THAT(Raised<BadArgument>([&] { hits.Sort(hits.columns().size()); }), HasSubstr("no column"));
    EXPECT_THAT(Raised<BadArgument>([&] { hits.Column("none"); }), HasSubstr("no column"));
    EXPECT_THAT(Raised<BadArgument>([&] { hits.Remove(9); }), HasSubstr("no hit"));
  });
}

TEST(Archive, SearchesWhatTheFolderRightsAllowAndNothingWithoutAny) {
  const SampleServer server;
  WithArchive(server.ForIt(), [](Archive& archive) {
    for (const Hit& hit : archive.Search({.query = "copper", .folderRights = "$(#Mail);"})) {
      EXPECT_EQ(hit.document.channel, "Mail");
    }
    for (const char* nothing : {"", ";", " ; "}) {
      const HitList hits = archive.Search({.query = "copper", .folderRights = nothing});
      EXPECT_TRUE(hits.empty() && hits.total() == 0) << nothing;
    }
    EXPECT_GT(archive.Search({.query = "copper"}).total(), 0);
  });
}

TEST(Archive, OpensADocumentWithItsMarksInCharacters) {
  const SampleServer server;
  WithArchive(server.ForIt(), [](Archive& archive) {
    const Document document = archive.Open({"Mail", "Inbox", "1262", ""}, "price");
    EXPECT_EQ(document.name.version, "2");
    EXPECT_FALSE(document.title.empty());
    std::size_t marked = 0;
    for (const Segment& segment : document.segments) {
      EXPECT_EQ(segment.text.marks.size(), static_cast<std::size_t>(segment.hitCount));
      std::string all;
      for (const TextPiece& piece : segment.text.Pieces()) {
        all += piece.text;
        if (!piece.isMarked) continue;
        ++marked;
        EXPECT_EQ(piece.text, "price");
      }
      EXPECT_EQ(all, segment.text.text);
    }
    EXPECT_GT(marked, 0U);
    EXPECT_THAT(Raised<Refused>([&] { archive.Open({"Mail", "Inbox", "999999", ""}); }), HasSubstr("999999"));
  });
  const MarkedText text{"ä€ price", {{1, 1}, {3, 5}}};
  std::vector<std::string> pieces;
  for (const TextPiece& piece : text.Pieces()) pieces.push_back((piece.isMarked ? "*" : "") + piece.text);
  EXPECT_THAT(pieces, ElementsAre("ä", "*€", " ", "*price"));
}

TEST(Archive, CreatesEditsAndDeletesAndLeavesNoImportFile) {
  const SampleServer server;
  WithArchive(server.ForIt(), [&](Archive& archive) {
    const std::string evil = "first\r\n@FIELD,12\r\nHafenkontor\n@DB,$(#Mail)\\Inbox\r\n@end";
    DocumentName name = archive.Create("Finance", "Orders", "Bestellung über Rohre", {{1, 11, "Anna"}, {1, 16, evil}});
    EXPECT_EQ(name.version, "1");
    const Document made = archive.Open(name);
    EXPECT_EQ(made.title, "Bestellung über Rohre");
    const auto text = std::ranges::find(made.segments, 16, &Segment::fieldId);
    ASSERT_NE(text, made.segments.end());
    EXPECT_THAT(text->text.text, HasSubstr("@FIELD,12"));
    EXPECT_THAT(text->text.text, HasSubstr("@end"));
    archive.AddNote(name, "Bitte prüfen,\ndann weiter");
    EXPECT_EQ(archive.Open(name).notes.at(0).text, "Bitte prüfen,\ndann weiter");
    EXPECT_THAT(archive.Open(name).notes.at(0).author, "webuser");
    archive.DeleteNotes(name);
    EXPECT_THAT(archive.Notes(name), IsEmpty());
    name = archive.Edit(name, "Neue Bestellung", {{1, 16, "second"}});
    EXPECT_EQ(name.version, "2");
    archive.Delete({name.channel, name.archive, name.id, ""});
    Raised<Refused>([&] { archive.Open(name); });
    for (const char* title : {"two\nlines", "Rohre,1:11", "Rohre,x, 1 : 11"}) {
      Raised<BadArgument>([&] { archive.Create("Finance", "Orders", title, {}); });
    }
  });
  for (const auto& entry : std::filesystem::directory_iterator(server.BlobPath("").parent_path())) {
    EXPECT_NE(entry.path().extension(), ".import") << entry.path();
  }
}

TEST(Archive, MovesFilesInBothDirections) {
  const SampleServer server;
  const testing::TemporaryDirectory directory;
  directory.Write("Größe.bin", std::string("\0\r\nbytes", 8));
  WithArchive(server.ForIt(), [&](Archive& archive) {
    const auto file = archive.Fetch({"Mail", "Inbox", "1262", "2"}, Content::OfSegment(6));
    ASSERT_TRUE(file);
    EXPECT_EQ(std::filesystem::file_size(*file), 56U);
    Raised<Refused>([&] { archive.Fetch({"Mail", "Inbox", "1262", "2"}, Content::FirstFile("nix")); });
    archive.Upload(directory.File("Größe.bin"));
    EXPECT_EQ(TextOfFile(archive.Transfer("Größe.bin", 8)), std::string("\0\r\nbytes", 8));
    Raised<BadArgument>([&] { archive.Upload(directory.File("none")); });
    // The directory of the archive is in use again.
    EXPECT_TRUE(archive.Fetch({"Mail", "Inbox", "1262", "2"}, Content::FirstFile()));
  });
}

TEST(Archive, RefusesValuesThatCannotBeSent) {
  const SampleServer server;
  WithArchive(server.ForIt(), [](Archive& archive) {
    struct Case {
      const char* query;
      const char* reason;
    };
    for (const auto& [query, reason] : {Case{"a^,^b", "separates the fields"}, Case{"a^,", "separates the fields"},
                                        Case{"ok Łódź", "character 4"}, Case{"\xFF", "character 1"}}) {
      const std::string text = Raised<BadArgument>([&, q = query] { archive.Search({.query = q}); });
      EXPECT_THAT(text, HasSubstr(reason)) << query;
    }
    EXPECT_THAT(Raised<Refused>([&] { archive.Search({.query = "\"unclosed"}); }), HasSubstr("closing"));
    Settings other;
    other.hosts = "127.0.0.1,9";
    EXPECT_THAT(Raised<BadArgument>([&] { const Archive second(other); }), HasSubstr("another thread"));
  });
  testing::InOwnThread([] {
    Settings settings;
    settings.hosts = "127.0.0.1,many";
    EXPECT_THAT(Raised<BadArgument>([&] { const Archive archive(settings); }), HasSubstr("query servers"));
    settings.hosts = "";
    settings.database = "Driver={No such driver}";
    Raised<DatabaseFailed>([&] { const Archive archive(settings); });
  });
}

TEST(Archive, TellsFailuresApartAndWhatWasTried) {
  const std::uint16_t unused = [] { return testing::ScriptedServer(testing::ScriptedServer::Silent()).port(); }();
  testing::ScriptedServer silent(testing::ScriptedServer::Silent());
  testing::ScriptedServer closing([](testing::Peer& peer) { peer.ReadRequest(); });
  Settings settings;
  settings.timeout = std::chrono::seconds(1);
  settings.hosts = "127.0.0.1," + std::to_string(unused);
  WithArchive(settings, [&](Archive& archive) {
    try {
      archive.Channels();
      ADD_FAILURE();
    } catch (const ConnectionFailed& error) {
      ASSERT_FALSE(error.request().attempts.empty());
      EXPECT_EQ(error.request().attempts[0].port, unused);
      EXPECT_THAT(error.request().attempts[0].error, HasSubstr("10061"));
      EXPECT_FALSE(error.request().wasSent);
    }
  });
  settings.hosts = silent.Host();
  WithArchive(settings, [&](Archive& archive) {
    try {
      archive.Channels();
      ADD_FAILURE();
    } catch (const TimedOut& error) {
      EXPECT_TRUE(error.request().wasSent);
    }
  });
  settings.hosts = closing.Host();
  WithArchive(settings, [](Archive& archive) { Raised<ConnectionFailed>([&] { archive.Channels(); }); });
  settings.hosts = silent.Host();
  settings.timeout = std::chrono::seconds(30);
  WithArchive(settings, [](Archive& archive) {
    std::thread other([&] { archive.Cancel(); });
    Raised<Cancelled>([&] { archive.Channels(); });
    other.join();
  });
}

TEST(Archive, SpreadsTheRequestsOfThreadsOverTheServers) {
  std::array<std::atomic<int>, 2> requests{};
  const auto counts = [&](std::size_t server) {
    return [&, server](testing::Peer& peer) {
      peer.ReadRequest();
      ++requests[server];
      peer.Send(testing::Answer({"alive"}));
      peer.WaitForClose();
    };
  };
  testing::ScriptedServer first(counts(0));
  testing::ScriptedServer second(counts(1));
  Settings settings;
  settings.hosts = first.Host() + "|" + second.Host();
  for (const bool spread : {true, false}) {
    settings.spread = spread;
    for (int thread = 0; thread < 4; ++thread) {
      WithArchive(settings, [&](Archive& archive) {
        Archive other(settings);  // the servers of the thread, from the same place on
        EXPECT_EQ(archive.Live(), other.Live());
      });
    }
    EXPECT_EQ(requests[0].exchange(0), spread ? 4 : 8);
    EXPECT_EQ(requests[1].exchange(0), spread ? 4 : 0);
  }
}

TEST(Archive, ChecksEveryServerOfItsList) {
  const SampleServer server;
  Settings settings = server.ForIt();
  const std::uint16_t unused = [] { return testing::ScriptedServer(testing::ScriptedServer::Silent()).port(); }();
  settings.hosts += "|127.0.0.1," + std::to_string(unused);
  settings.timeout = std::chrono::seconds(2);
  WithArchive(settings, [&](Archive& archive) {
    const std::vector<ServerHealth> health = archive.Health();
    ASSERT_THAT(health, SizeIs(2));
    EXPECT_TRUE(health[0].isAlive);
    EXPECT_THAT(health[0].text, HasSubstr("alive"));
    EXPECT_FALSE(health[1].isAlive);
    EXPECT_EQ(health[1].port, unused);
    EXPECT_FALSE(health[1].text.empty());
  });
}

}  // namespace
}  // namespace oxaqrycln::client
