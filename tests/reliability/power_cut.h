// What a disk may hold after a power cut. A step that was synced is on it. Of the others,
// any may be missing, in any combination, and of a write any of its blocks.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "reliability/disk_journal.h"

namespace quorrix::test {

class PowerCut {
 public:
  // The bytes of each file, by path. A path that ends in "/" is a folder.
  using State = std::map<std::string, std::string>;

  PowerCut(DiskContents before, std::vector<DiskStep> steps)
      : before_(std::move(before)), steps_(std::move(steps)) {}

  // Every state that a cut after the first `count` steps may leave. Throws std::length_error
  // if so many of them are not synced that there are too many states.
  [[nodiscard]] std::set<State> statesAfter(std::size_t count) const;

  // What a program that goes on running sees after them.
  [[nodiscard]] State seenAfter(std::size_t count) const;

 private:
  // The part of a step that reached the disk.
  struct Part {
    bool isThere = true;
    std::vector<std::pair<std::size_t, std::size_t>> blocks = {};  // of a write: begin and end
    std::size_t end = 0;                                           // the file is at least that long
  };
  using Parts = std::vector<Part>;

  [[nodiscard]] bool isDurable(std::size_t step, std::size_t count) const;
  [[nodiscard]] static Parts possiblePartsOf(const DiskStep& step);
  [[nodiscard]] static Part wholeOf(const DiskStep& step);
  void addStates(Parts& chosen, std::size_t count, std::set<State>& states) const;
  [[nodiscard]] State stateOf(const Parts& parts) const;
  [[nodiscard]] State reachableIn(DiskContents& disk) const;

  DiskContents before_;
  std::vector<DiskStep> steps_;
};

}  // namespace quorrix::test
