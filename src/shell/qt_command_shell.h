// Opens addresses with the desktop's opener, xdg-open, or where that is missing the
// way Qt knows, the desktop portal among them.
#pragma once

#include "platform/command_shell.h"

namespace quorrix {

class QtCommandShell final : public CommandShell {
 public:
  void run(std::string_view line) override;
};

}  // namespace quorrix
