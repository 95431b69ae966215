// The server program, killed while it works.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/temporary_directory.h"
#include "tests/tools/devserver/wire_client.h"
#include "tools/devserver/protocol/request.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::size_t kDocumentCount = 4;

// The program as a process, which is killed when its owner ends.
class Process {
 public:
  explicit Process(const std::vector<std::string>& arguments) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    const Descriptor reader(ends[0]);
    Descriptor writer(ends[1]);
    std::vector<char*> words = {const_cast<char*>(DEVSERVER_PROGRAM)};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    id_ = fork();
    if (id_ == 0) {
      dup2(writer.get(), STDOUT_FILENO);
      execv(DEVSERVER_PROGRAM, words.data());
      _exit(127);
    }
    writer = Descriptor();
    std::string output;
    pollfd polled{reader.get(), POLLIN, 0};
    while (output.find("listening on ") == std::string::npos || !output.ends_with('\n')) {
      char buffer[256];
      const ssize_t count = poll(&polled, 1, kPatienceMilliseconds) > 0 ? read(reader.get(), buffer, sizeof buffer) : 0;
      if (count <= 0) return;
      output.append(buffer, static_cast<std::size_t>(count));
    }
    port_ = static_cast<std::uint16_t>(std::stoi(output.substr(output.rfind(':') + 1)));
  }
  ~Process() { Kill(); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void Kill() {
    if (id_ > 0) {
      kill(id_, SIGKILL);
      waitpid(id_, nullptr, 0);
    }
    id_ = 0;
  }
  std::uint16_t port() const { return port_; }
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
  pid_t id_ = 0;
  std::uint16_t port_ = 0;
};

class KillTest : public ::testing::Test {
 protected:
  KillTest() { std::filesystem::create_directory(directory_ + "/blobs"); }

  std::vector<std::string> Arguments() const {
    return {"--port",      "0", "--database", directory_ + "/archive.db", "--blob-dir", directory_ + "/blobs",
            "--documents", "0"};
  }

  // An import with the same word in every part.
  std::string WriteImport(const std::string& name, const std::string& word) const {
    std::ofstream(directory_ + "/blobs/" + name + ".dat") << word;
    std::ofstream(directory_ + "/blobs/" + name + ".imp", std::ios::trunc)
        << "@DB,$(#Finance)\\Orders\r\n@FOLDER,FT:" << word << ",1:11,1:16,3:30\r\n@FIELD,11\r\n"
        << word << "\r\n@FIELD,16\r\n"
        << word << "\r\n@FIELD,30\r\n"
        << name << ".dat\r\n";
    return name + ".imp";
  }

  // Edits a document repeatedly until the server is gone. identifier and word are those of the last answered edit.
  void EditUntilKilled(std::uint16_t port, std::size_t number, std::string& identifier, std::string& word,
                       std::atomic<int>& editCount) {
    const std::string name = "w" + std::to_string(number);
    for (int count = 0; count < 100000; ++count) {
      const std::string next = "word" + std::to_string(number) + "x" + std::to_string(count);
      WriteImport(name, next);
      Client client(port);
      client.Send(Request("EditDocument^,^" + name + ".imp^,^" + identifier));
      const std::string answer = client.Answer();
      if (!answer.starts_with("Status: OK\r\n") || !answer.ends_with("\r\n")) return;
      identifier = answer.substr(12, answer.size() - 14);
      word = next;
      ++editCount;
    }
  }

  const oxaqrycln::testing::TemporaryDirectory temporary_;
  const std::string directory_ = temporary_.path();
};

// The distinct words of the newest version of a document, and the version.
std::set<std::string> WordsOf(Service& service, const std::string& documentId, std::string& version) {
  const auto ask = [&](const std::string& command) { return service.Answer(Request(command)).text; };
  const std::string document = "^,^Finance^,^Orders^,^" + documentId + "^,^";
  std::set<std::string> words;
  const std::string info = ask("GetDocumentInfo" + document);
  const std::vector<std::string> fields = SplitRequest(info.substr(12, info.size() - 14)).fields;
  if (fields.size() != 12) return {info};
  version = fields[3];
  words.insert(fields[7]);
  const std::string texts = ask("GetSegmentText" + document + "^,^^,^^,^^,^").substr(12);
  for (std::size_t at = 0; at < texts.size(); at = texts.find("\r\n", at) + 2) {
    words.insert(texts.substr(at + 1, texts.find("^\r\n", at + 1) - at - 1));
  }
  const std::string stored = ask("GetSegmentFirstBLOB" + document + "^,^^,^");
  const std::string name = stored.substr(stored.find("\r\n", 12) + 2);
  std::string content;
  std::ifstream(service.blobs().path() + "/" + name.substr(0, name.size() - 2)) >> content;
  words.insert(content);
  // The row that searches use has the same words.
  const std::string word = *words.begin();
  const std::string hits =
      ask("QueryArchive^,^title:" + word + " author:" + word + " text:" + word + "^,^0^,^0^,^^,^^,^^,^3");
  if (!hits.starts_with("Status: OK\r\n1\r\n") || hits.find("^" + documentId + "^,^" + version) == std::string::npos) {
    words.insert("search: " + hits);
  }
  return words;
}

// Nothing of an interrupted edit is left in the tables.
void ExpectNoPieces(const std::string& file) {
  Database database = OpenDatabase(file);
  for (const char* sql :
       {"SELECT count(*) FROM version JOIN document ON id = document_id WHERE version.version > document.version",
        "SELECT count(*) FROM version WHERE 3 <> (SELECT count(*) FROM segment WHERE "
        "segment.document_id = version.document_id AND segment.version = version.version)",
        "SELECT count(*) FROM content WHERE id NOT IN (SELECT content_id FROM segment WHERE content_id IS NOT NULL)",
        "SELECT integrity_check <> 'ok' FROM pragma_integrity_check"}) {
    EXPECT_EQ(database.execAndGet(sql).getInt(), 0) << sql;
  }
}

TEST_F(KillTest, LeavesEachDocumentAsBeforeOrAfterAnEdit) {
  std::vector<std::string> identifiers;
  std::vector<std::string> words;
  std::mt19937 random(7);
  {
    Process server(Arguments());
    ASSERT_NE(server.port(), 0);
    for (std::size_t number = 0; number < kDocumentCount; ++number) {
      words.push_back("start" + std::to_string(number));
      Client client(server.port());
      client.Send(Request("CreateDocument^,^" + WriteImport("w" + std::to_string(number), words.back())));
      const std::string answer = client.Answer();
      ASSERT_TRUE(answer.starts_with("Status: OK\r\n")) << answer;
      identifiers.push_back(answer.substr(12, answer.size() - 14));
    }
  }
  for (int round = 0; round < 8; ++round) {
    Process server(Arguments());
    ASSERT_NE(server.port(), 0);
    std::atomic<int> editCount = 0;
    std::vector<std::thread> editors;
    for (std::size_t number = 0; number < kDocumentCount; ++number) {
      editors.emplace_back(
          [&, number] { EditUntilKilled(server.port(), number, identifiers[number], words[number], editCount); });
    }
    // Some edits are complete, and others in progress.
    const int wanted = 3 + static_cast<int>(random() % 20);
    for (int wait = 0; wait < kPatienceMilliseconds && editCount < wanted; ++wait) poll(nullptr, 0, 1);
    poll(nullptr, 0, static_cast<int>(random() % 10));
    server.Kill();
    for (std::thread& editor : editors) editor.join();
    EXPECT_GE(editCount, wanted);

    Service service(OpenArchive(directory_ + "/archive.db"), {{"webuser", "secret"}},
                    BlobDirectory::At(directory_ + "/blobs"));
    for (std::size_t index = 0; index < kDocumentCount; ++index) {
      const std::size_t comma = identifiers[index].find(',');
      const std::string documentId = identifiers[index].substr(0, comma);
      std::string version;
      const std::set<std::string> found = WordsOf(service, documentId, version);
      ASSERT_EQ(found.size(), 1U) << "document " << documentId << " is mixed: " << ::testing::PrintToString(found);
      // Answered edits are kept; one more may have been carried out without an answer.
      const int answered = std::stoi(identifiers[index].substr(comma + 1));
      if (version == std::to_string(answered)) {
        EXPECT_EQ(*found.begin(), words[index]) << "round " << round;
      } else {
        EXPECT_EQ(version, std::to_string(answered + 1)) << "round " << round;
      }
      identifiers[index] = documentId + "," + version;
      words[index] = *found.begin();
    }
    ExpectNoPieces(directory_ + "/archive.db");
  }
}

TEST_F(KillTest, LeavesNothingOfAnUnfinishedUpload) {
  std::ofstream(directory_ + "/blobs/f") << "old";
  Process server(Arguments());
  ASSERT_NE(server.port(), 0);
  Client client(server.port());
  client.Send(Request("UploadFile^,^^,^f^,^1000000") + "\r\n" + std::string(600000, 'x'));
  ASSERT_TRUE(server.HasOpenFileIn(directory_ + "/blobs/"));
  server.Kill();
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory_ + "/blobs"), {}), 1);
  EXPECT_EQ(std::filesystem::file_size(directory_ + "/blobs/f"), 3U);
}

}  // namespace
}  // namespace oxaqrycln::devserver
