#include "data_tool/lock_turns.h"

#include <utility>

namespace quorrix {

LockTurns::LockTurns(LockTiming timing, const DeferredSignals* signals)
    : timing_(std::move(timing)), signals_(signals), lastPause_(timing_.now()) {}

void LockTurns::betweenReads() {
  if (timing_.now() - lastPause_ >= kLongestTurn) pause();
}

void LockTurns::pause() {
  timing_.sleep(kPause);
  lastPause_ = timing_.now();
}

void LockTurns::throwIfInterrupted() const {
  if (signals_ != nullptr) signals_->throwIfPending();
}

}  // namespace quorrix
