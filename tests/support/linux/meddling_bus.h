// Stands between a message bus and its clients, and changes random bytes of what the bus
// sends to them: in the handshake, in the headers of messages, in their texts. It is a
// process of its own.
#pragma once

#include <sys/types.h>

#include <string>

#include "support/temporary_folder.h"

namespace quorrix::test {

class MeddlingBus {
 public:
  // `bus` is the path of the bus's socket. One in `rarity` blocks of bytes is changed.
  MeddlingBus(const std::string& bus, unsigned seed, unsigned rarity);
  ~MeddlingBus();
  MeddlingBus(const MeddlingBus&) = delete;
  MeddlingBus& operator=(const MeddlingBus&) = delete;

  [[nodiscard]] std::string address() const { return "unix:path=" + path(); }

 private:
  [[nodiscard]] std::string path() const { return (folder_ / "bus").string(); }

  TemporaryFolder folder_;
  pid_t process_ = -1;
};

}  // namespace quorrix::test
