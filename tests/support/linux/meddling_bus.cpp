#include "support/linux/meddling_bus.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <random>
#include <span>
#include <stdexcept>
#include <vector>

namespace quorrix::test {
namespace {

sockaddr_un nameOf(const std::string& path) {
  sockaddr_un name{};
  name.sun_family = AF_UNIX;
  std::strncpy(name.sun_path, path.c_str(), sizeof name.sun_path - 1);
  return name;
}

int newSocket() { return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0); }

// The part that runs in the new process.
class Meddler {
 public:
  Meddler(int listener, const std::string& bus, unsigned seed, unsigned rarity)
      : listener_(listener), bus_(nameOf(bus)), random_(seed), rarity_(rarity) {}

  [[noreturn]] void run() {
    for (;;) {
      std::vector<pollfd> sources{{listener_, POLLIN, 0}};
      for (const Pair& pair : pairs_) {
        sources.push_back({pair.client, POLLIN, 0});
        sources.push_back({pair.bus, POLLIN, 0});
      }
      poll(sources.data(), sources.size(), -1);
      std::vector<Pair> open;
      for (std::size_t i = 0; i < pairs_.size(); ++i) {
        const bool isOpen =
            (sources[1 + 2 * i].revents == 0 || pass(pairs_[i].client, pairs_[i].bus, false)) &&
            (sources[2 + 2 * i].revents == 0 || pass(pairs_[i].bus, pairs_[i].client, true));
        if (isOpen) {
          open.push_back(pairs_[i]);
        } else {
          close(pairs_[i].client);
          close(pairs_[i].bus);
        }
      }
      pairs_ = open;
      if (sources[0].revents != 0) accept();
    }
  }

 private:
  struct Pair {
    int client;
    int bus;
  };

  void accept() {
    const Pair pair{::accept(listener_, nullptr, nullptr), newSocket()};
    if (connect(pair.bus, reinterpret_cast<const sockaddr*>(&bus_), sizeof bus_) != 0) _exit(1);
    pairs_.push_back(pair);
  }

  bool pass(int from, int to, bool mayChange) {
    std::array<char, 4096> block;
    const ssize_t count = read(from, block.data(), block.size());
    if (count <= 0) return false;
    const std::span<char> bytes(block.data(), static_cast<std::size_t>(count));
    if (mayChange && random_() % rarity_ == 0) bytes[random_() % bytes.size()] ^= changed();
    return send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL) == count;
  }

  char changed() { return static_cast<char>(1U << (random_() % 8)); }

  int listener_;
  sockaddr_un bus_;
  std::mt19937 random_;
  unsigned rarity_;
  std::vector<Pair> pairs_;
};

}  // namespace

MeddlingBus::MeddlingBus(const std::string& bus, unsigned seed, unsigned rarity) {
  const int listener = newSocket();
  const sockaddr_un name = nameOf(path());
  if (bind(listener, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
      listen(listener, 16) != 0) {
    throw std::runtime_error("no socket");
  }
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Meddler(listener, bus, seed, rarity).run();
  }
  close(listener);
}

MeddlingBus::~MeddlingBus() {
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

}  // namespace quorrix::test
