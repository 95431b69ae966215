// interruption.h - signals: a command that makes files removes what is unfinished before a signal ends it.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_INTERRUPTION_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_INTERRUPTION_H_

#include <exception>
#include <memory>

namespace oxaqrycln::oxaqry {

// A signal has asked the command to end.
class Interrupted : public std::exception {
 public:
  explicit Interrupted(int signal) noexcept : signal_(signal) {}
  int signal() const noexcept { return signal_; }
  const char* what() const noexcept override { return "interrupted"; }

 private:
  int signal_;
};

// One at a time in a process. While it exists, SIGINT, SIGQUIT, SIGTERM and SIGHUP are only recorded.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // The last signal since the last one of these objects was made, 0 for none.
  static int Signal() noexcept;
  // Raises Interrupted when there was a signal.
  static void Check() {
    if (const int signal = Signal(); signal != 0) throw Interrupted(signal);
  }

 private:
  struct Former;
  std::unique_ptr<Former> former_;
};

// From now on, exceeding the limit on the size of files is an error like a full disk instead of a signal that ends the
// process.
void TakeFileLimitsAsErrors();

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_INTERRUPTION_H_
