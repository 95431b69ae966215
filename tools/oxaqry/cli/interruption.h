// interruption.h - what signals do to the tool: a command that has made files ends in order when one asks it to.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_CLI_INTERRUPTION_H_
#define OXAQRYCLN_TOOLS_OXAQRY_CLI_INTERRUPTION_H_

#include <exception>
#include <memory>

namespace oxaqrycln::oxaqry {

// The command was asked to end.
class Interrupted : public std::exception {
 public:
  explicit Interrupted(int signal) noexcept : signal_(signal) {}
  int signal() const noexcept { return signal_; }
  const char* what() const noexcept override { return "interrupted"; }

 private:
  int signal_;
};

// One at a time in a process. While it lives, an interrupt, a quit, a request to end or a hang-up only takes note of
// the signal.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // The signal that came last, 0 for none.
  int Signal() const noexcept;
  // Raises Interrupted when a signal came.
  void Check() const {
    if (const int signal = Signal(); signal != 0) throw Interrupted(signal);
  }

 private:
  struct Former;
  std::unique_ptr<Former> former_;
};

// A limit on the size of files then shows as a full disk, not as a signal that ends the process.
void TakeFileLimitsAsErrors();

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_CLI_INTERRUPTION_H_
