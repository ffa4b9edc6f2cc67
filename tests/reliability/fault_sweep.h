// Runs a command again and again, with another call failing each time.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "reliability/swept_commands.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix::test {

class FaultSweep {
 public:
  explicit FaultSweep(const SweptCommand& command) : command_(command) {}

  // Lets call 1, 2, 3, ... fail with each number until the command succeeds. A call that
  // changes something fails twice, before it takes effect and after. Returns how often a
  // call failed.
  int run();

 private:
  class Step;
  struct Stage;

  using State = std::map<std::string, std::string>;

  // A failure of one call.
  struct Fault {
    int call;            // counted from 1
    std::size_t number;  // as an index into kSweptNumbers
    bool isAfterwards;   // the call takes effect first
  };

  void runUndisturbed();
  [[nodiscard]] int pointsWith(std::size_t number, bool isAfterwards);
  [[nodiscard]] bool strikes(const Fault& fault);
  void expectTold(Stage& stage, const Step& step, const Fault& fault);
  void expectPassedOver(Stage& stage, const Step& step);
  void expectToSucceedNext(std::unique_ptr<Stage> stage, Remedy remedy, const State& afterFailure);
  [[nodiscard]] const Stretch& stretchOf(int call) const;
  [[nodiscard]] const State& stateAt(const Fault& fault) const;

  const SweptCommand& command_;
  std::vector<FileCall> calls_;  // of the undisturbed command
  std::vector<State> statesAt_;  // at the beginning of each of them
  State stateAfter_;
};

}  // namespace quorrix::test
