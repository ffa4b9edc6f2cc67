// Opens addresses with the desktop's opener, xdg-open. If that is missing, uses Qt's own
// means, such as the desktop portal.
#pragma once

#include "platform/code_page.h"
#include "platform/command_shell.h"

namespace quorrix {

class QtCommandShell final : public CommandShell {
 public:
  // `codePage` must outlive this.
  explicit QtCommandShell(const CodePage& codePage) : codePage_(codePage) {}

  void run(std::string_view line) override;

 private:
  const CodePage& codePage_;
};

}  // namespace quorrix
