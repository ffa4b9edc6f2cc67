// A socket at the address of a bus that accepts connections and never answers.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/linux/file_descriptor.h"
#include "support/temporary_folder.h"

namespace quorrix::test {

class SilentSocket {
 public:
  // `room` connections are accepted; later ones wait.
  explicit SilentSocket(int room = 16) {
    if (bind(listener_.number(), reinterpret_cast<const sockaddr*>(&name()), sizeof name_) != 0 ||
        listen(listener_.number(), room) != 0) {
      throw std::runtime_error("no silent socket");
    }
  }

  [[nodiscard]] std::string address() const { return "unix:path=" + path(); }

  // The socket in it is named "bus".
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }

  // Takes all the room that is left.
  void fill() {
    while (true) {
      callers_.emplace_back(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0));
      const auto* const name = reinterpret_cast<const sockaddr*>(&name_);
      if (connect(callers_.back().number(), name, sizeof name_) != 0) return;
    }
  }

 private:
  [[nodiscard]] std::string path() const { return (folder_ / "bus").string(); }
  const sockaddr_un& name() {
    name_.sun_family = AF_UNIX;
    std::strncpy(name_.sun_path, path().c_str(), sizeof name_.sun_path - 1);
    return name_;
  }

  TemporaryFolder folder_;
  sockaddr_un name_{};
  FileDescriptor listener_{socket(AF_UNIX, SOCK_STREAM, 0)};
  std::vector<FileDescriptor> callers_;
};

}  // namespace quorrix::test
