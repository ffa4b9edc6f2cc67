// Records the lines that it is told to run, and opens nothing.
#pragma once

#include <string>
#include <vector>

#include "platform/command_shell.h"
#include "platform/failure.h"

namespace quorrix::test {

class RecordingCommandShell final : public CommandShell {
 public:
  void run(std::string_view line) override {
    if (failure != 0) throw Failure(failure);
    lines.emplace_back(line);
  }

  std::vector<std::string> lines;
  int failure = 0;  // the number with which every run fails; 0: none fails
};

}  // namespace quorrix::test
