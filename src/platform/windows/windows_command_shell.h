// Opens addresses as the desktop's shell does when one is double-clicked.
#pragma once

#include <string>
#include <string_view>

#include "platform/command_shell.h"

namespace quorrix {

// The address as UTF-8, with every character percent-encoded that could end an argument.
// The browser's registered command line contains the address unchanged between quotation
// marks, and a backslash before the closing one would escape it.
[[nodiscard]] std::string asOneArgument(std::string_view address);

class WindowsCommandShell final : public CommandShell {
 public:
  void run(std::string_view line) override;
};

}  // namespace quorrix
