// Files that reach the blob directory: put there by the server, or received over the connection.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/file_size_limit.h"
#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

TEST(FetchedFiles, AreReportedWithoutAPathAfterTheirExtensionWasChanged) {
  struct Case {
    const char* name;
    const char* sent;
    const char* reported;  // nullptr for a name that is refused
  };
  for (const Case& each :
       {Case{"plain", "scan.tif", "scan.PDF"}, Case{"no rule", "scan.txt", "scan.txt"},
        Case{"server path", "D:\\out\\scan.tif", "scan.PDF"}, Case{"slashes", "/out/a.txt", "a.txt"},
        Case{"short", ".c", ".c"}, Case{"parent", "out\\..", nullptr}, Case{"device", "com1.tif", nullptr},
        Case{"no name", "", ""}, Case{"a directory alone", "out\\", ""}, Case{"of a directory", "folder.tif", nullptr},
        Case{"of a pipe", "pipe.tif", nullptr}, Case{"of a link to a device", "null.tif", nullptr},
        Case{"of a link to a file", "link.tif", "link.PDF"}}) {
    WithAnswer({"12", each.sent, "more"}, [&](Page& page) {
      page.blobs.Write("scan.tif", "content");
      std::filesystem::create_directory(page.blobs.File("folder.tif"));
      ASSERT_EQ(mkfifo(page.blobs.File("pipe.tif").c_str(), 0600), 0);
      std::filesystem::create_symlink("/dev/null", page.blobs.File("null.tif"));
      std::filesystem::create_symlink("scan.tif", page.blobs.File("link.tif"));
      page.query.strChangeFileExt = "TIF-PDF,C-PDF";
      Variant name = "kept";
      Variant length = "kept";
      const Variant result = page.query.TELOGetSegmentData("M", "A", "1", "2", 3, &name, &length);
      const bool isRefused = each.reported == nullptr;
      EXPECT_EQ(result, isRefused ? kFailed : Variant::Long(1)) << each.name;
      EXPECT_EQ(name, Variant(isRefused ? "kept" : each.reported)) << each.name;
      EXPECT_EQ(length, Variant(isRefused ? "kept" : "12")) << each.name;
      EXPECT_EQ(page.Log().find("'TELOGetSegmentData()': 52 - ") != std::string::npos, isRefused) << each.name;
      EXPECT_EQ(page.blobs.Read("scan.PDF"), name == Variant("scan.PDF") ? "content" : "") << each.name;
      for (const char* other : {"folder.tif", "pipe.tif", "null.tif"}) EXPECT_TRUE(page.blobs.Has(other)) << other;
    });
  }
}

struct Transfer {
  const char* name;
  std::string bytes;       // what the server sends
  bool resets;             // ends with a reset instead of a close
  std::int32_t announced;  // what the page says
  const char* status;      // how the error text starts; empty after a sound transfer
};

// The names in a directory, in order.
std::vector<std::string> Names(const TemporaryDirectory& directory) {
  std::vector<std::string> names;
  for (const auto& each : std::filesystem::directory_iterator(directory.path()))
    names.push_back(each.path().filename());
  std::ranges::sort(names);
  return names;
}

TEST(Transfer, ReplacesAnOlderFileOrLeavesItUnharmed) {
  const std::string large(3'000'000, 'x');
  for (const Transfer& each :
       {Transfer{"whole", "new content", false, 11, ""}, Transfer{"large", large, false, 3'000'000, ""},
        Transfer{"empty", "", false, 0, ""}, Transfer{"cut", "new", false, 11, "Winsock Error (10054 - "},
        Transfer{"nothing", "", false, 5, "Winsock Error (10054 - "},
        Transfer{"reset", large, true, 4'000'000, "Winsock Error (10054 - "},
        Transfer{"too much", "new content and more", false, 11, "Received 20 bytes of a file of 11"}}) {
    InOwnThread([&] {
      Page page({[&](Peer& peer) {
                   peer.ReadRequest();
                   peer.Send(each.bytes);
                   if (each.resets) peer.Reset();
                 },
                 ScriptedServer::Replies(Answer({"fine"}))});
      page.blobs.Write("f.bin", "old");
      page.query.strBlobPathRemote = "R:\\blobs";
      Variant status = "kept";
      const Variant result = page.query.TELOTransferBLOB("X:\\elsewhere\\f.bin", each.announced, &status);
      EXPECT_EQ(page.LastCommand(), "^TransferBLOB^,^R:\\blobs\\f.bin^") << each.name;
      const bool isSound = each.status[0] == '\0';
      EXPECT_EQ(result, isSound ? Variant::Long(1) : kFailed) << each.name << status.ToText();
      EXPECT_TRUE(page.blobs.Read("f.bin") == (isSound ? each.bytes : "old")) << each.name;
      EXPECT_EQ(status.ToText().substr(0, isSound ? 1 : std::string(each.status).size()), each.status) << each.name;
      EXPECT_EQ(Names(page.blobs), std::vector<std::string>{"f.bin"}) << each.name;
      EXPECT_EQ(page.query.LiveCheck(), "fine") << each.name;
    });
  }
}

TEST(Transfer, RefusesNamesAndDirectoriesBeforeAnythingIsSent) {
  struct Case {
    const char* name;
    std::string file;
    std::int32_t byteCount;
    const char* error;
    const char* directory = "/none";
  };
  for (const Case& each :
       {Case{"parent", "..", 1, "52 - "}, Case{"device", "x\\NUL.txt", 1, "52 - "}, Case{"stream", "a:b", 1, "52 - "},
        Case{"NUL", std::string("a\0b", 3), 1, "52 - "}, Case{"control", "a\nb", 1, "52 - "},
        Case{"300 bytes", std::string(300, 'n'), 1, "52 - "}, Case{"negative", "f", -1, "5 - "},
        Case{"no directory", "f", 1, "76 - "}, Case{"unwritable directory", "f", 1, "7", "/sys"}}) {
    WithAnswer({}, [&](Page& page) {
      page.query.strBlobPathLocal = each.directory;
      EXPECT_EQ(page.query.TELOTransferBLOB(each.file, each.byteCount), kFailed) << each.name;
      EXPECT_NE(page.Log().find(std::string("'TELOTransferBLOB()': ") + each.error), std::string::npos)
          << each.name << page.Log();
      EXPECT_EQ(page.server.Connections(), 0) << each.name;
    });
  }
}

TEST(Transfer, ToAFullDiskEndsAtOnceAndLeavesNothing) {
  InOwnThread([] {
    Page page({[](Peer& peer) {
      peer.ReadRequest();
      peer.Send(std::string(8U << 20U, 'x'));
      peer.WaitForClose();
    }});
    Variant status;
    {
      const FileSizeLimit limit(2U << 20U);
      EXPECT_EQ(page.query.TELOTransferBLOB("f.bin", 8 << 20, &status), kFailed);
    }
    EXPECT_EQ(status, Variant("Winsock Error (61 - Disk full)"));
    EXPECT_NE(page.Log().find("'Winsock_DataArrival()': 61 - Disk full"), std::string::npos);
    EXPECT_TRUE(Names(page.blobs).empty());
  });
}

TEST(FetchedFiles, AreNotRequestedWithAPageListThatIsRefused) {
  WithAnswer({"12", "f.tif"}, [](Page& page) {
    EXPECT_EQ(page.query.TELOGetSegmentMultiTIF("M", "A", "1", "2", "1-9999999"), kFailed);
    EXPECT_EQ(page.server.Connections(), 0);
    EXPECT_NE(page.Log().find("'GetPages()': 14 - "), std::string::npos) << page.Log();
    EXPECT_EQ(page.Log().find("TELOGetSegmentMultiTIF()"), std::string::npos);
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
