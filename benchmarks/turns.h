// Benchmarks of single operations whose contestants take turns. A disk is quick at
// one moment and slow at the next: every repetition is one operation, the contestants'
// repetitions are mixed, and the median is one of many.
#pragma once

#include <functional>
#include <string>

namespace quorrix::bench {

struct Turn {
  std::function<void()> run;              // what is measured
  std::function<void()> prepare = [] {};  // what has to be done first, unmeasured
};

// `make` is called when the contestant's first turn comes. What the turn keeps open,
// it keeps for the whole run, as a program does that runs all day.
void registerTurns(const std::string& name, int repetitions, const std::function<Turn()>& make);

}  // namespace quorrix::bench
