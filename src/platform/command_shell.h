// Where "start" lines go: the operating system opens the address behind "start " in
// the program that the user has chosen for it. Real: qt_command_shell.h,
// windows_command_shell.h.
#pragma once

#include <string_view>

namespace quorrix {

inline constexpr std::string_view kStartCommand = "start ";

class CommandShell {
 public:
  virtual ~CommandShell() = default;

  // `line` is single-byte text: kStartCommand and an address. The address reaches the
  // program that opens it as one argument, whatever characters it has; no shell reads
  // it. Where the system makes a command line of it, as Windows does, the characters
  // that could end the argument are percent-encoded. Returns at once and does not learn
  // what became of it. Throws kFileNotFound when there is nothing that could open it.
  virtual void run(std::string_view line) = 0;
};

}  // namespace quorrix
