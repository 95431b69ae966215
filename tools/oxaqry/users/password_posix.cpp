#include <poll.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <ostream>

#include "tools/oxaqry/cli/interruption.h"
#include "tools/oxaqry/users/password.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::size_t kMostBytes = 4096;  // more than a terminal takes for a line

class SilentTerminal {
 public:
  SilentTerminal() {
    if (tcgetattr(STDIN_FILENO, &former_) != 0) Fail();
    Silence(TCSAFLUSH);
  }
  ~SilentTerminal() { tcsetattr(STDIN_FILENO, TCSANOW, &former_); }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

  // After a stop, during which the shell may have changed it.
  void SilenceAgain() const { Silence(TCSANOW); }

 private:
  [[noreturn]] static void Fail() { throw CommandError("the terminal cannot be kept from showing passwords"); }
  void Silence(int when) const {
    termios silent = former_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
    if (tcsetattr(STDIN_FILENO, when, &silent) != 0) Fail();
  }

  termios former_{};
};

// Signals that ask to end come only while the terminal is waited for, so that none comes unseen between a look and a
// wait.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t ends;
    sigemptyset(&ends);
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) sigaddset(&ends, signal);
    pthread_sigmask(SIG_BLOCK, &ends, &former_);
  }
  ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  // True when there is something to read, false when a signal came instead.
  bool AwaitInput() const {
    pollfd one{STDIN_FILENO, POLLIN, 0};
    const int count = ppoll(&one, 1, nullptr, &former_);
    if (count < 0 && errno != EINTR) throw CommandError("the terminal cannot be read");
    return count > 0;
  }

 private:
  sigset_t former_{};
};

}  // namespace

std::string ReadHiddenLine(const std::string& question, std::ostream& err) {
  const Interruption interruption;
  const HeldSignals held;
  const SilentTerminal silent;
  err << question << std::flush;
  std::string line;
  // Not through the stream, which would go on reading after a signal.
  for (char each = 0; line.size() < kMostBytes;) {
    const bool hasInput = held.AwaitInput();
    if (const int signal = interruption.Signal(); signal != 0) {
      err << '\n';
      throw Interrupted(signal);
    }
    if (!hasInput) {
      silent.SilenceAgain();
      continue;
    }
    const ssize_t count = read(STDIN_FILENO, &each, 1);
    if (count < 0) throw CommandError("the terminal cannot be read");
    if (count == 0 || each == '\n') break;
    line += each;
  }
  err << '\n' << std::flush;
  return line;
}

}  // namespace oxaqrycln::oxaqry
