// Opens addresses as the desktop's shell does when one is double-clicked.
#pragma once

#include <string>
#include <string_view>

#include "platform/command_shell.h"

namespace quorrix {

// As UTF-8, with everything percent-encoded that could end an argument: the browser's
// registered command line has the address between quotation marks, as it is given, and
// a backslash before the closing one would take its meaning away.
[[nodiscard]] std::string asOneArgument(std::string_view address);

class WindowsCommandShell final : public CommandShell {
 public:
  void run(std::string_view line) override;
};

}  // namespace quorrix
