// Opens addresses with the desktop's opener, xdg-open. If that is missing, uses Qt's own
// means, such as the desktop portal.
#pragma once

#include "platform/command_shell.h"

namespace quorrix {

class QtCommandShell final : public CommandShell {
 public:
  void run(std::string_view line) override;
};

}  // namespace quorrix
