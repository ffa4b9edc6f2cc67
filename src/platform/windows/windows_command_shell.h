// Opens addresses as the desktop's shell does when one is double-clicked.
#pragma once

#include <string>
#include <string_view>

#include "platform/code_page.h"
#include "platform/command_shell.h"

namespace quorrix {

// The address as UTF-8, with every character percent-encoded that could end an argument.
// The browser's registered command line contains the address unchanged between quotation
// marks, and a backslash before the closing one would escape it.
[[nodiscard]] std::string asOneArgument(const CodePage& codePage, std::string_view address);

class WindowsCommandShell final : public CommandShell {
 public:
  // `codePage` must outlive this.
  explicit WindowsCommandShell(const CodePage& codePage) : codePage_(codePage) {}

  void run(std::string_view line) override;

 private:
  const CodePage& codePage_;
};

}  // namespace quorrix
