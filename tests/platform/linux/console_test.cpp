#include "platform/console.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string>

#include "platform/linux/file_descriptor.h"
#include "support/failure_number.h"
#include "support/linux/child_process.h"

namespace quorrix {
namespace {

// Lets standard output or standard error lead elsewhere while it exists.
class Redirection {
 public:
  Redirection(int stream, const FileDescriptor& target) : stream_(stream), before_(::dup(stream)) {
    std::fflush(nullptr);
    ::dup2(target.number(), stream);
  }
  ~Redirection() {
    std::fflush(nullptr);
    ::dup2(before_.number(), stream_);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

 private:
  int stream_;
  FileDescriptor before_;
};

struct Pipe {
  Pipe() {
    int ends[2];
    EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    out = FileDescriptor(ends[0]);
    in = FileDescriptor(ends[1]);
  }

  // What a single read returns.
  [[nodiscard]] std::string text() const {
    std::array<char, 256> bytes;
    const ssize_t size = ::read(out.number(), bytes.data(), bytes.size());
    return {bytes.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
  }

  FileDescriptor out;
  FileDescriptor in;
};

TEST(Console, WritesEveryByteToItsStream) {
  const Pipe pipe;
  const Pipe errors;
  {
    const Redirection output(STDOUT_FILENO, pipe.in);
    const Redirection error(STDERR_FILENO, errors.in);
    Console::write("caf\xC3\xA9\n");
    Console::writeError("no \xE2\x82\xAC\n");
  }
  EXPECT_EQ(pipe.text(), "caf\xC3\xA9\n");
  EXPECT_EQ(errors.text(), "no \xE2\x82\xAC\n");
}

TEST(Console, FailsOnAFullDisk) {
  const FileDescriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
  const Redirection output(STDOUT_FILENO, full);
  const Redirection error(STDERR_FILENO, full);
  EXPECT_EQ(test::failureNumberOf([] { Console::write("x"); }), 61);
  Console::writeError("ignored");
}

TEST(Console, KnowsThatTheReaderHasLeft) {
  const Console console;
  Pipe pipe;
  pipe.out = FileDescriptor();
  const Redirection output(STDOUT_FILENO, pipe.in);
  EXPECT_THROW(Console::write("x"), ReaderLeft);
}

TEST(Console, EndsTheProgramByTheSignalOfABrokenPipe) {
  const int status = test::waitStatusOfAChild([] {
    const Console console;
    return Console::endAfterReaderLeft();
  });
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_EQ(WTERMSIG(status), SIGPIPE);
}

// If the signal is blocked, the status is the one that shells show for it.
TEST(Console, EndsWithAStatusIfTheSignalIsBlocked) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  sigset_t before;
  ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &signals, &before), 0);
  EXPECT_EQ(Console::endAfterReaderLeft(), 141);
  const timespec none{};
  EXPECT_EQ(::sigtimedwait(&signals, nullptr, &none), SIGPIPE);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(Console, HasAWidthInATerminalOnly) {
  const winsize size{.ws_row = 24, .ws_col = 91, .ws_xpixel = 0, .ws_ypixel = 0};
  const winsize unknown{};
  int master = -1;
  int slave = -1;
  ASSERT_EQ(::openpty(&master, &slave, nullptr, nullptr, &size), 0);
  const FileDescriptor owner(master);
  const FileDescriptor terminal(slave);
  const Pipe pipe;
  const auto widthIn = [](const FileDescriptor& target) {
    const Redirection output(STDOUT_FILENO, target);
    return Console::terminalWidth();
  };
  EXPECT_EQ(widthIn(terminal), 91U);
  EXPECT_EQ(widthIn(pipe.in), std::nullopt);
  ASSERT_EQ(::ioctl(terminal.number(), TIOCSWINSZ, &unknown), 0);
  EXPECT_EQ(widthIn(terminal), std::nullopt);
}

}  // namespace
}  // namespace quorrix
