#include "platform/folder_claim.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <thread>

#include "platform/linux/file_descriptor.h"

namespace quorrix {
namespace {

constexpr int kBacklog = 8;
constexpr std::chrono::milliseconds kPauseBetweenTries{10};
constexpr std::chrono::milliseconds kRequestPatience{200};
constexpr char kAnswer = '\n';

struct SocketName {
  sockaddr_un address{};
  socklen_t length = 0;

  [[nodiscard]] const sockaddr* get() const {
    return reinterpret_cast<const sockaddr*>(&address);  // NOLINT: as the sockets API has it
  }
};

// In the abstract namespace, not in a folder: a name there becomes free when its socket
// is closed.
std::optional<SocketName> socketNameOf(const FileDescriptor& folder) {
  struct stat status {};
  if (!folder.isOpen() || ::fstat(folder.number(), &status) != 0) return std::nullopt;
  const std::string text = "quorrix-" + std::to_string(::getuid()) + '-' +
                           std::to_string(status.st_dev) + '-' + std::to_string(status.st_ino);
  SocketName name;
  name.address.sun_family = AF_UNIX;
  std::ranges::copy(text, name.address.sun_path + 1);
  name.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
  return name;
}

FileDescriptor newSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// Any user may take a name in the abstract namespace.
bool isOfThisUser(const FileDescriptor& socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return ::getsockopt(socket.number(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         peer.uid == ::getuid();
}

bool isReadableWithin(const FileDescriptor& socket, std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  for (;;) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd waiting{.fd = socket.number(), .events = POLLIN, .revents = 0};
    const int count = ::poll(&waiting, 1, static_cast<int>(std::max<long>(left.count(), 0)));
    if (count >= 0 || errno != EINTR) return count > 0;
  }
}

// nullopt when the other program ended instead of answering.
std::optional<ClaimResult> ask(const FileDescriptor& socket, std::string_view token,
                               std::chrono::milliseconds patience) {
  if (token.size() > FolderClaim::kLongestToken) token = {};
  // An empty packet would look like the end of the connection.
  const std::string request = std::string(token) + kAnswer;
  if (::send(socket.number(), request.data(), request.size(), MSG_NOSIGNAL) < 0) {
    return std::nullopt;
  }
  if (!isReadableWithin(socket, patience)) return ClaimResult::Unanswered;
  char answer = 0;
  if (::recv(socket.number(), &answer, 1, 0) != 1) return std::nullopt;
  return ClaimResult::Answered;
}

}  // namespace

struct FolderClaim::Handles {
  // Held open, because some file systems reuse the identity of a folder that nobody uses.
  FileDescriptor folder;
  FileDescriptor socket;
};

FolderClaim::FolderClaim() : handles_(std::make_unique<Handles>()) {}
FolderClaim::~FolderClaim() = default;

ClaimResult FolderClaim::claim(const Path& folder, std::string_view activationToken,
                               std::chrono::milliseconds patience) {
  handles_->folder = FileDescriptor(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  const auto name = socketNameOf(handles_->folder);
  if (!name) return ClaimResult::Unavailable;
  const auto deadline = std::chrono::steady_clock::now() + patience;
  // The program that has the folder may have ended, or may not be listening yet.
  for (;;) {
    FileDescriptor socket = newSocket();
    if (!socket.isOpen()) return ClaimResult::Unavailable;
    if (::bind(socket.number(), name->get(), name->length) == 0) {
      if (::listen(socket.number(), kBacklog) != 0) return ClaimResult::Unavailable;
      handles_->socket = std::move(socket);
      return ClaimResult::Claimed;
    }
    if (errno != EADDRINUSE) return ClaimResult::Unavailable;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return ClaimResult::Unanswered;
    if (::connect(socket.number(), name->get(), name->length) == 0) {
      if (!isOfThisUser(socket)) return ClaimResult::Unavailable;
      if (const auto result = ask(socket, activationToken, left)) return *result;
    }
    std::this_thread::sleep_for(std::min(kPauseBetweenTries, left));
  }
}

std::intptr_t FolderClaim::signal() const { return handles_->socket.number(); }

std::optional<std::string> FolderClaim::takeRequest() {
  const FileDescriptor socket(::accept4(handles_->socket.number(), nullptr, nullptr, SOCK_CLOEXEC));
  if (!socket.isOpen() || !isOfThisUser(socket)) return std::nullopt;
  if (!isReadableWithin(socket, kRequestPatience)) return std::nullopt;
  std::array<char, kLongestToken + 1> request;
  const ssize_t size = ::recv(socket.number(), request.data(), request.size(), 0);
  if (size < 1) return std::nullopt;
  ::send(socket.number(), &kAnswer, 1, MSG_NOSIGNAL);
  return std::string(request.data(), static_cast<std::size_t>(size - 1));
}

}  // namespace quorrix
