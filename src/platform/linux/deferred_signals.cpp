#include "platform/deferred_signals.h"

#include <array>
#include <csignal>

namespace quorrix {
namespace {

constexpr std::array<int, 3> kEnding{SIGINT, SIGTERM, SIGHUP};

// A handler can reach only what is static.
volatile std::sig_atomic_t noted = 0;
std::array<struct sigaction, kEnding.size()> earlier{};

void note(int signal) { noted = signal; }

}  // namespace

DeferredSignals::DeferredSignals() {
  noted = 0;
  struct sigaction deferring {};
  deferring.sa_handler = note;
  ::sigemptyset(&deferring.sa_mask);
  for (std::size_t i = 0; i < kEnding.size(); ++i) {
    ::sigaction(kEnding[i], nullptr, &earlier[i]);
    if (earlier[i].sa_handler != SIG_IGN) ::sigaction(kEnding[i], &deferring, nullptr);
  }
}

DeferredSignals::~DeferredSignals() {
  for (std::size_t i = 0; i < kEnding.size(); ++i) {
    ::sigaction(kEnding[i], &earlier[i], nullptr);
  }
  if (noted != 0) std::raise(noted);
}

// Not static, because it means nothing without an object.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void DeferredSignals::throwIfPending() const {
  if (noted != 0) throw EndRequested();
}

}  // namespace quorrix
