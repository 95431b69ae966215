// Passwords typed at a terminal: the tool itself runs on a pseudo terminal.
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>
#include <utility>

#include "tests/tools/oxaqry/users/oxaqry_database.h"

namespace oxaqrycln::oxaqry {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class AtTerminal {
 public:
  AtTerminal(const UserTestDatabase& database, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {OXAQRY_PROGRAM, "user"});
    const std::string variable = "OXAQRY_DATABASE=" + database.connectionString();
    std::vector<char*> words;
    for (std::string& each : arguments) words.push_back(each.data());
    words.push_back(nullptr);
    process_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (process_ == 0) {
      putenv(const_cast<char*>(variable.c_str()));
      alarm(30);  // ends it if it hangs
      execv(OXAQRY_PROGRAM, words.data());
      _exit(127);
    }
  }
  ~AtTerminal() {
    close(terminal_);
    if (process_ > 0) waitpid(process_, nullptr, 0);
  }

  // Whether the text is shown, after what was awaited before.
  bool Awaits(const std::string& text) {
    while (shown_.find(text, seen_) == std::string::npos) {
      if (!ReadSome()) return false;
    }
    seen_ = shown_.find(text, seen_) + text.size();
    return true;
  }
  // Types the answer to a prompt; the terminal must not echo it.
  void Answer(const std::string& question, const std::string& text) {
    ASSERT_TRUE(Awaits(question)) << shown_;
    EXPECT_FALSE(Echoes());
    ASSERT_TRUE(Waits());
    ASSERT_EQ(write(terminal_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  bool Echoes() const {
    termios now{};
    return tcgetattr(terminal_, &now) == 0 && (now.c_lflag & ECHO) != 0;
  }
  // Whether the process sleeps within a generous time. After a prompt it does so to read: only then does a signal reach
  // a blocked read.
  bool Waits() const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < end) {
      std::ifstream state("/proc/" + std::to_string(process_) + "/stat");
      std::string line;
      if (std::getline(state, line) && line.find(") S ") != std::string::npos) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
  }
  // The exit status; -1 for a process that a signal ended.
  int Status() {
    while (ReadSome()) {
    }
    int status = 0;
    if (waitpid(process_, &status, 0) == process_) process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  const std::string& shown() const noexcept { return shown_; }

 private:
  // False at the end of the process.
  bool ReadSome() {
    char piece[512];
    const ssize_t count = read(terminal_, piece, sizeof piece);
    if (count > 0) shown_.append(piece, static_cast<std::size_t>(count));
    return count > 0;
  }

  int terminal_ = -1;
  pid_t process_ = -1;
  std::string shown_;
  std::size_t seen_ = 0;
};

TEST(UserPassword, IsTypedTwiceAndNotShown) {
  const UserTestDatabase database(Kind::Sqlite);
  AtTerminal run(database, {"add", "anna", "--archive-user", "WEB"});
  run.Answer("New password: ", "s3cret\n");
  run.Answer("Repeat the password: ", "s3cret\n");
  run.Answer("New archive password: ", "\u00A3x\n");
  run.Answer("Repeat the archive password: ", "\u00A3x\n");
  EXPECT_TRUE(run.Awaits("Added the user anna")) << run.shown();
  EXPECT_TRUE(run.Echoes());
  EXPECT_EQ(run.Status(), 0);
  EXPECT_THAT(run.shown(), Not(HasSubstr("s3cret")));
  EXPECT_THAT(run.shown(), Not(HasSubstr("\u00A3")));

  AtTerminal unlike(database, {"passwd", "anna"});
  unlike.Answer("New password: ", "one\n");
  unlike.Answer("Repeat the password: ", "two\n");
  EXPECT_EQ(unlike.Status(), 1);
  EXPECT_THAT(unlike.shown(), HasSubstr("passwords differ"));
  for (const auto& [password, status] : {std::pair("s3cret\n", 0), {"one\n", 1}}) {
    AtTerminal check(database, {"check", "anna"});
    check.Answer("Password: ", password);
    EXPECT_EQ(check.Status(), status) << check.shown();
  }
}

TEST(UserPassword, AnInterruptOrAQuitRestoresTheTerminal) {
  const UserTestDatabase database(Kind::Sqlite);
  for (const auto& [typed, status] : {std::pair("half\x03", 130), {"half\x1C", 131}}) {
    AtTerminal run(database, {"add", "anna"});
    run.Answer("New password: ", typed);
    EXPECT_EQ(run.Status(), status);
    EXPECT_TRUE(run.Echoes());
    EXPECT_EQ(database.Count("Users"), 0);
  }
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
