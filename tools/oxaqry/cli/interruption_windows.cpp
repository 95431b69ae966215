#include <winsock2.h>
// windows.h follows winsock2.h.
#include <windows.h>

#include <atomic>
#include <csignal>

#include "tools/oxaqry/cli/interruption.h"

namespace oxaqrycln::oxaqry {
namespace {

std::atomic<int> lastSignal = 0;

// The system calls this on a thread of its own. The end of the console or of the session ends the program when this
// returns, so that only what the user types can be taken back.
BOOL WINAPI RecordEvent(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  lastSignal = event == CTRL_C_EVENT ? SIGINT : SIGBREAK;
  return TRUE;
}

}  // namespace

struct Interruption::Former {};

Interruption::Interruption() : former_(std::make_unique<Former>()) {
  lastSignal = 0;
  SetConsoleCtrlHandler(RecordEvent, TRUE);
}

Interruption::~Interruption() { SetConsoleCtrlHandler(RecordEvent, FALSE); }

int Interruption::Signal() noexcept { return lastSignal; }

// The system has no such limits.
void TakeFileLimitsAsErrors() {}

}  // namespace oxaqrycln::oxaqry
