#include "platform/deferred_signals.h"

#include <windows.h>

#include <atomic>

namespace quorrix {
namespace {

// The status of a program that Ctrl-C has ended.
constexpr UINT kStatusOfControlC = 0xC000013A;

// After this time Windows ends a program whose console is being closed.
constexpr DWORD kLongestWait = 5000;  // in milliseconds

// A handler can reach only what is static. It runs in a thread of its own.
std::atomic<bool> isNoted{false};

BOOL WINAPI note(DWORD event) {
  isNoted = true;
  // Windows ends the program as soon as the handler of any other event returns.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) ::Sleep(kLongestWait);
  return TRUE;
}

}  // namespace

DeferredSignals::DeferredSignals() {
  isNoted = false;
  ::SetConsoleCtrlHandler(note, TRUE);
}

DeferredSignals::~DeferredSignals() {
  ::SetConsoleCtrlHandler(note, FALSE);
  if (isNoted) ::ExitProcess(kStatusOfControlC);
}

void DeferredSignals::throwIfPending() const {
  if (isNoted) throw EndRequested();
}

}  // namespace quorrix
