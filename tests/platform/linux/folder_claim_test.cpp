#include "platform/folder_claim.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <memory>

#include "platform/linux/file_descriptor.h"
#include "support/linux/child_process.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::TemporaryFolder;

constexpr std::chrono::milliseconds kNoPatience{20};

TEST(FolderClaimOnLinux, SeesTheFolderThroughALink) {
  const TemporaryFolder folder;
  const TemporaryFolder elsewhere;
  const Path link = elsewhere / "link";
  std::filesystem::create_directory_symlink(folder.path(), link);
  FolderClaim first;
  ASSERT_EQ(first.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  FolderClaim second;
  EXPECT_EQ(second.claim(link, "", kNoPatience), ClaimResult::Unanswered);
}

// The second program does not wait for the answer; its request stays until it is taken.
TEST(FolderClaimOnLinux, PassesTheActivationTokenOn) {
  const TemporaryFolder folder;
  FolderClaim first;
  ASSERT_EQ(first.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  const std::string longest(4096, 't');
  for (const auto& [token, passedOn] : std::vector<std::pair<std::string, std::string>>{
           {"token-1", "token-1"}, {longest, longest}, {longest + 't', ""}}) {
    FolderClaim second;
    ASSERT_EQ(second.claim(folder.path(), token, kNoPatience), ClaimResult::Unanswered);
    EXPECT_EQ(first.takeRequest(), passedOn);
  }
}

// A process started by the program that has the claim, such as a browser, does not keep
// the claim.
TEST(FolderClaimOnLinux, IsNotInheritedByProgramsThatAreStarted) {
  const TemporaryFolder folder;
  FolderClaim claim;
  ASSERT_EQ(claim.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  EXPECT_NE(::fcntl(static_cast<int>(claim.signal()), F_GETFD) & FD_CLOEXEC, 0);
}

// A process of another user, under the name that this user's first program would have.
class Squatter {
 public:
  explicit Squatter(const Path& folder) {
    struct stat status {};
    ::stat(folder.c_str(), &status);
    const std::string name = "quorrix-" + std::to_string(::getuid()) + '-' +
                             std::to_string(status.st_dev) + '-' + std::to_string(status.st_ino);
    int ready[2];
    EXPECT_EQ(::pipe(ready), 0);
    process_ = ::fork();
    if (process_ == 0) {
      sockaddr_un address{};
      address.sun_family = AF_UNIX;
      name.copy(address.sun_path + 1, name.size());
      const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
      const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
      const bool isDone = ::setuid(65534) == 0 &&
                          ::bind(socket, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                          ::listen(socket, 1) == 0;
      if (::write(ready[1], isDone ? "y" : "n", 1) == 1) ::pause();
      ::_exit(1);
    }
    char answer = 0;
    isReady_ = ::read(ready[0], &answer, 1) == 1 && answer == 'y';
    ::close(ready[0]);
    ::close(ready[1]);
  }
  Squatter(const Squatter&) = delete;
  Squatter& operator=(const Squatter&) = delete;
  ~Squatter() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }

  [[nodiscard]] bool isReady() const { return isReady_; }

 private:
  pid_t process_ = 0;
  bool isReady_ = false;
};

TEST(FolderClaimOnLinux, IsNotTakenAwayByAnotherUser) {
  if (::getuid() != 0) GTEST_SKIP() << "only root may start a process of another user";
  const TemporaryFolder folder;
  const Squatter squatter(folder.path());
  ASSERT_TRUE(squatter.isReady());
  FolderClaim claim;
  EXPECT_EQ(claim.claim(folder.path(), "", kNoPatience), ClaimResult::Unavailable);
}

// Connects to the program that has the claim, as a later start does.
FileDescriptor callerOf(const FolderClaim& claim) {
  sockaddr_un name{};
  socklen_t size = sizeof name;
  auto* const address = reinterpret_cast<sockaddr*>(&name);
  ::getsockname(static_cast<int>(claim.signal()), address, &size);
  FileDescriptor caller(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  EXPECT_EQ(::connect(caller.number(), address, size), 0);
  return caller;
}

TEST(FolderClaimOnLinux, PassesNothingOnFromACallerThatEndsOrSaysNothing) {
  const TemporaryFolder folder;
  FolderClaim claim;
  ASSERT_EQ(claim.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  static_cast<void>(callerOf(claim));  // it is closed at once
  EXPECT_EQ(claim.takeRequest(), std::nullopt);
  const FileDescriptor silent = callerOf(claim);
  EXPECT_EQ(claim.takeRequest(), std::nullopt);
  FolderClaim later;
  ASSERT_EQ(later.claim(folder.path(), "token", kNoPatience), ClaimResult::Unanswered);
  EXPECT_EQ(claim.takeRequest(), "token");
}

TEST(FolderClaimOnLinux, PassesNothingOnFromAnotherUser) {
  if (::getuid() != 0) GTEST_SKIP() << "only root may start a process of another user";
  const TemporaryFolder folder;
  FolderClaim claim;
  ASSERT_EQ(claim.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  const int status = test::waitStatusOfAChild([&claim] {
    if (::setuid(65534) != 0) return 1;
    const FileDescriptor caller = callerOf(claim);
    return ::send(caller.number(), "token\n", 6, MSG_NOSIGNAL) == 6 ? 0 : 1;
  });
  ASSERT_TRUE(WIFEXITED(status));
  ASSERT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(claim.takeRequest(), std::nullopt);
}

// It has accepted the connection and has read the request, so the later start waits for
// the answer.
TEST(FolderClaimOnLinux, IsTakenOverFromAProgramThatEndsBeforeItAnswers) {
  const TemporaryFolder folder;
  auto first = std::make_unique<FolderClaim>();
  ASSERT_EQ(first->claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  FolderClaim second;
  auto result = std::async(std::launch::async, [&] {
    return second.claim(folder.path(), "token", std::chrono::seconds(20));
  });
  {
    pollfd waiting{.fd = static_cast<int>(first->signal()), .events = POLLIN, .revents = 0};
    ASSERT_EQ(::poll(&waiting, 1, 20'000), 1);
    const FileDescriptor call(::accept(waiting.fd, nullptr, nullptr));
    char request[16];
    ASSERT_EQ(::recv(call.number(), request, sizeof request, 0), 6);
    first.reset();
  }
  EXPECT_EQ(result.get(), ClaimResult::Claimed);
}

}  // namespace
}  // namespace quorrix
