// The server program, killed while it works.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "tests/support/temporary_directory.h"
#include "tests/tools/devserver/wire_client.h"

namespace oxaqrycln::devserver {
namespace {

using ::testing::HasSubstr;

// The program as a process, which is killed when its owner ends.
class Process {
 public:
  explicit Process(const std::string& arguments)
      : output_(popen(("echo $$; exec '" DEVSERVER_PROGRAM "' --port 0 --documents 0 " + arguments).c_str(), "r")) {
    char line[256] = "";
    if (fgets(line, sizeof line, output_) != nullptr) id_ = std::stoi(line);
    while (port_ == 0 && fgets(line, sizeof line, output_) != nullptr) {
      std::sscanf(line, "listening on 127.0.0.1:%hu", &port_);
    }
  }
  ~Process() { Kill(); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void Kill() {
    if (output_ == nullptr) return;
    if (id_ > 0) kill(id_, SIGKILL);
    pclose(std::exchange(output_, nullptr));
  }
  Client Send(const std::string& bytes) const {
    Client client(port_);
    client.Send(bytes);
    return client;
  }
  // Waits for the server to open a file there.
  bool HasOpenFileIn(const std::string& directory) const {
    for (int wait = 0; wait < kPatienceMilliseconds; wait += 10, poll(nullptr, 0, 10)) {
      for (const auto& file : std::filesystem::directory_iterator("/proc/" + std::to_string(id_) + "/fd")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(file, gone).string().starts_with(directory)) return true;
      }
    }
    return false;
  }

 private:
  FILE* output_;
  pid_t id_ = 0;
  std::uint16_t port_ = 0;
};

class KillTest : public ::testing::Test {
 protected:
  // Stores a version of the only document with the same word in every part; whether the server has confirmed it.
  bool Store(const Process& server, int version) const {
    const std::string word = "word" + std::to_string(version);
    blobs_.Write("a.dat", word);
    blobs_.Write("a.imp", "@DB,$(#Finance)\\Orders\r\n@FOLDER,FT:" + word + ",1:11,1:16,3:30\r\n@FIELD,11\r\n" + word +
                              "\r\n@FIELD,16\r\n" + word + "\r\n@FIELD,30\r\na.dat\r\n");
    Client client = server.Send(Request(version == 1 ? "CreateDocument^,^a.imp"
                                                     : "EditDocument^,^a.imp^,^1001," + std::to_string(version - 1)));
    return client.Answer() == "Status: OK\r\n1001," + std::to_string(version) + "\r\n";
  }

  // Every part of the newest version has its word, and nothing of an interrupted edit is left in the tables.
  void ExpectWhole(Service& service, int version) const {
    const auto ask = [&](const std::string& command) { return service.Answer(Request(command)).text; };
    const std::string document = "^,^Finance^,^Orders^,^1001^,^^,^";
    const std::string number = std::to_string(version);
    const std::string word = "word" + number;
    EXPECT_THAT(ask("GetDocumentInfo^,^Finance^,^Orders^,^1001^,^"), HasSubstr("^,^" + word + "^,^"));
    EXPECT_THAT(ask("GetSegmentText" + document + "^,^^,^^,^"), HasSubstr("\n^" + word + "^\r\n^" + word + "^\r\n"));
    EXPECT_THAT(ask("GetSegmentFirstBLOB" + document + "^,^"), HasSubstr("1001_" + number + "_3.dat"));
    EXPECT_EQ(blobs_.Read("1001_" + number + "_3.dat"), word);
    EXPECT_THAT(ask("QueryArchive^,^title:" + word + " author:" + word + " text:" + word + "^,^0^,^0^,^^,^^,^^,^3"),
                HasSubstr("^1001^,^" + number + "^"));
    Database database = OpenDatabase(archive_.File("db"));
    for (const char* sql :
         {"SELECT count(*) FROM version JOIN document ON id = document_id WHERE version.version > document.version",
          "SELECT count(*) FROM version WHERE 3 <> (SELECT count(*) FROM segment WHERE "
          "segment.document_id = version.document_id AND segment.version = version.version)",
          "SELECT count(*) FROM content WHERE id NOT IN (SELECT content_id FROM segment WHERE content_id IS NOT NULL)",
          "SELECT integrity_check <> 'ok' FROM pragma_integrity_check"}) {
      EXPECT_EQ(database.execAndGet(sql).getInt(), 0) << sql;
    }
  }

  const oxaqrycln::testing::TemporaryDirectory archive_;
  const oxaqrycln::testing::TemporaryDirectory blobs_;
  const std::string arguments_ = "--database " + archive_.File("db") + " --blob-dir " + blobs_.path();
};

TEST_F(KillTest, LeavesADocumentAsBeforeOrAfterAnEdit) {
  std::mt19937 random(7);
  std::atomic<int> version = 1;
  ASSERT_TRUE(Store(Process(arguments_), version));
  for (int round = 0; round < 24; ++round) {
    SCOPED_TRACE(round);
    Process server(arguments_);
    std::thread editor([&] {
      while (Store(server, version + 1)) ++version;
    });
    // Some edits are complete, and another one is in progress.
    const int wanted = version + 2 + static_cast<int>(random() % 3);
    for (int wait = 0; wait < kPatienceMilliseconds && version < wanted; ++wait) poll(nullptr, 0, 1);
    poll(nullptr, 0, static_cast<int>(random() % 40));
    server.Kill();
    editor.join();
    ASSERT_GE(version, wanted);

    Service service(OpenArchive(archive_.File("db")), {{"webuser", "secret"}}, BlobDirectory::At(blobs_.path()));
    // Answered edits are kept; one more may have been carried out without an answer.
    const std::string next = "GetDocumentInfo^,^Finance^,^Orders^,^1001^,^" + std::to_string(version + 1);
    if (service.Answer(Request(next)).text.starts_with("Status: OK\r\n")) ++version;
    ExpectWhole(service, version);
  }
}

TEST_F(KillTest, LeavesNothingOfAnUnfinishedUpload) {
  blobs_.Write("f", "old");
  Process server(arguments_);
  const Client client = server.Send(Request("UploadFile^,^^,^f^,^1000000") + "\r\n" + std::string(600000, 'x'));
  ASSERT_TRUE(server.HasOpenFileIn(blobs_.path()));
  server.Kill();
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(blobs_.path()), {}), 1);
  EXPECT_EQ(blobs_.Read("f"), "old");
}

}  // namespace
}  // namespace oxaqrycln::devserver
