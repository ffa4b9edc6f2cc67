// Benchmarks of single operations whose contestants take turns. The speed of a disk
// varies from moment to moment. So every repetition is one operation, the contestants'
// repetitions are interleaved, and the median is taken over many of them.
#pragma once

#include <functional>
#include <string>

namespace quorrix::bench {

struct Turn {
  std::function<void()> run;              // what is measured
  std::function<void()> prepare = [] {};  // what has to be done first, not measured
};

// `make` is called at the contestant's first turn. What the turn holds open stays open
// for the whole run, as in a program that runs all day.
void registerTurns(const std::string& name, int repetitions, const std::function<Turn()>& make);

}  // namespace quorrix::bench
