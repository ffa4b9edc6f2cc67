// Lets a program remove unfinished output before Ctrl-C or the end of the session ends it. There
// is one source file per platform, linux/deferred_signals.cpp and windows/deferred_signals.cpp.
#pragma once

namespace quorrix {

// Thrown by DeferredSignals::throwIfPending(). Destructors tidy up on its way to main(), which has
// to catch it: without a handler they would not run.
struct EndRequested {};

// While the object exists, SIGINT, SIGTERM and SIGHUP (on Windows Ctrl-C, Ctrl-Break and the
// closing of the console) are only noted. Signals that are ignored stay ignored. At most one
// object may exist at a time.
class DeferredSignals {
 public:
  DeferredSignals();

  // If a signal was noted, that signal now ends the process, as it would have without the object.
  ~DeferredSignals();

  DeferredSignals(const DeferredSignals&) = delete;
  DeferredSignals& operator=(const DeferredSignals&) = delete;

  // Throws EndRequested if a signal was noted. Call it between two pieces of long work.
  void throwIfPending() const;
};

}  // namespace quorrix
