// Stands between a message bus and its clients, and changes what the bus sends to them: the
// handshake, the headers of messages, their texts. It is a process of its own.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <functional>
#include <span>
#include <string>

#include "support/temporary_folder.h"

namespace quorrix::test {

class MeddlingBus {
 public:
  // Called in the other process for each block of bytes.
  using Change = std::function<void(std::span<char>)>;

  // `bus` is the path of the bus's socket.
  MeddlingBus(const std::string& bus, Change change);
  ~MeddlingBus();
  MeddlingBus(const MeddlingBus&) = delete;
  MeddlingBus& operator=(const MeddlingBus&) = delete;

  // How often a client that has sent anything has closed its connection, as it does when it
  // cannot understand a message.
  [[nodiscard]] int connectionsClosedByClients() const { return *closed_; }

  [[nodiscard]] std::string address() const { return "unix:path=" + path(); }

 private:
  [[nodiscard]] std::string path() const { return (folder_ / "bus").string(); }

  TemporaryFolder folder_;
  pid_t process_ = -1;
  std::atomic<int>* closed_;  // shared by both processes
};

// Changes one bit of one in `rarity` blocks.
[[nodiscard]] MeddlingBus::Change changingRandomBits(unsigned seed, unsigned rarity);

// Replaces each occurrence of `text` by `other`, which has the same length.
[[nodiscard]] MeddlingBus::Change replacing(const std::string& text, const std::string& other);

}  // namespace quorrix::test
