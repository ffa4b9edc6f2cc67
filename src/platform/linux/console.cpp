#include "platform/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/failure.h"
#include "platform/linux/write_all.h"
#include "platform/system_errors.h"

namespace quorrix {
namespace {

constexpr int kStatusOfBrokenPipe = 128 + SIGPIPE;

// Returns 0, or the errno of the failure.
int writeTo(int descriptor, std::string_view text) {
  const auto write = [descriptor](std::span<const char> rest, std::size_t /*done*/) {
    return ::write(descriptor, rest.data(), rest.size());
  };
  return writeAll(text, write).reason;
}

}  // namespace

// A signal in the middle of a write would end the program before it could tidy up. SIGXFSZ comes
// when a file becomes larger than the user's limit.
Console::Console() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

Console::~Console() {
  std::signal(SIGPIPE, SIG_DFL);
  std::signal(SIGXFSZ, SIG_DFL);
}

void Console::write(std::string_view text) {
  const int reason = writeTo(STDOUT_FILENO, text);
  if (reason == EPIPE) throw ReaderLeft();
  if (reason != 0) throw Failure(failureNumberOfErrno(reason));
}

void Console::writeError(std::string_view text) noexcept {
  static_cast<void>(writeTo(STDERR_FILENO, text));
}

std::optional<std::size_t> Console::terminalWidth() {
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

int Console::endAfterReaderLeft() {
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  return kStatusOfBrokenPipe;
}

}  // namespace quorrix
