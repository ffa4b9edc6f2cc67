// Runs "start" lines: the operating system opens the address after "start " in the
// program that the user has chosen for it. The real ones are qt_command_shell.h and
// windows_command_shell.h.
#pragma once

#include <string_view>

namespace quorrix {

inline constexpr std::string_view kStartCommand = "start ";

class CommandShell {
 public:
  virtual ~CommandShell() = default;

  // `line` is single-byte text: kStartCommand followed by an address. The address reaches
  // the program that opens it as one argument, whatever characters it contains; no shell
  // parses it. If the system builds a command line from it, as Windows does, characters
  // that could end the argument are percent-encoded. Returns at once and does not report
  // what the opened program does. Throws kFileNotFound if nothing can open the address, and
  // kOutOfMemory.
  virtual void run(std::string_view line) = 0;
};

}  // namespace quorrix
