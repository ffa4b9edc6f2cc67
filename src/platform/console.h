// Standard output and the terminal that it may lead to. There is one source file per
// platform, linux/console.cpp and windows/console.cpp.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace quorrix {

// Thrown by Console::write() when the program that reads standard output has closed it.
struct ReaderLeft {};

// Texts are UTF-8. On Windows the console shows them as UTF-8 while the object exists.
class Console {
 public:
  Console();
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // Writes all of `text` to standard output. Throws ReaderLeft, and otherwise Failure, such as
  // kDiskFull.
  static void write(std::string_view text);

  // Writes to standard error. Failures are ignored.
  static void writeError(std::string_view text) noexcept;

  // The width in columns if standard output is a terminal, otherwise nullopt.
  [[nodiscard]] static std::optional<std::size_t> terminalWidth();

  // The exit status after ReaderLeft. On Linux it does not return: the process ends by SIGPIPE,
  // as other commands do.
  [[nodiscard]] static int endAfterReaderLeft();

 private:
  unsigned earlierCodePage_ = 0;  // of the console of Windows
};

}  // namespace quorrix
