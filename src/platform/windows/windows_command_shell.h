// Opens addresses as the desktop's shell does when one is double-clicked.
#pragma once

#include "platform/command_shell.h"

namespace quorrix {

class WindowsCommandShell final : public CommandShell {
 public:
  void run(std::string_view line) override;
};

}  // namespace quorrix
