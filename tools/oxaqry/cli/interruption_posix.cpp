#include <csignal>

#include <array>
#include <atomic>

#include "tools/oxaqry/cli/interruption.h"

namespace oxaqrycln::oxaqry {
namespace {

constexpr std::array kSignals{SIGINT, SIGQUIT, SIGTERM, SIGHUP};
// Signals belong to the process, and so does this.
std::atomic<int> lastSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void RecordSignal(int signal) { lastSignal = signal; }

}  // namespace

struct Interruption::Former {
  std::array<struct sigaction, kSignals.size()> actions;
};

Interruption::Interruption() : former_(std::make_unique<Former>()) {
  lastSignal = 0;
  struct sigaction action {};
  action.sa_handler = RecordSignal;  // no SA_RESTART, so that a system call that waits ends at once
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], nullptr, &former_->actions[i]);
    // A signal that is ignored, as under nohup, stays ignored.
    if (former_->actions[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &former_->actions[i], nullptr);
}

int Interruption::Signal() noexcept { return lastSignal; }

void TakeFileLimitsAsErrors() { std::signal(SIGXFSZ, SIG_IGN); }

}  // namespace oxaqrycln::oxaqry
