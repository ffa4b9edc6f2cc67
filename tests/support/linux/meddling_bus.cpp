#include "support/linux/meddling_bus.h"

#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <random>
#include <stdexcept>
#include <utility>
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

void* sharedMemory() {
  void* const memory = mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no memory");
  return memory;
}

// The part that runs in the new process.
class Meddler {
 public:
  Meddler(int listener, const std::string& bus, MeddlingBus::Change change,
          std::atomic<int>& closed)
      : listener_(listener), bus_(nameOf(bus)), change_(std::move(change)), closed_(closed) {}

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
        Pair& pair = pairs_[i];
        const bool isClientThere =
            sources[1 + 2 * i].revents == 0 || pass(pair.client, pair.bus, false);
        if (!isClientThere && pair.hasSpoken) ++closed_;
        pair.hasSpoken = pair.hasSpoken || sources[1 + 2 * i].revents != 0;
        const bool isOpen =
            isClientThere && (sources[2 + 2 * i].revents == 0 || pass(pair.bus, pair.client, true));
        if (isOpen) {
          open.push_back(pair);
        } else {
          close(pair.client);
          close(pair.bus);
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
    bool hasSpoken = false;  // the client has sent anything
  };

  void accept() {
    const Pair pair{.client = ::accept(listener_, nullptr, nullptr), .bus = newSocket()};
    if (connect(pair.bus, reinterpret_cast<const sockaddr*>(&bus_), sizeof bus_) != 0) _exit(1);
    pairs_.push_back(pair);
  }

  bool pass(int from, int to, bool mayChange) {
    std::array<char, 4096> block;
    const ssize_t count = read(from, block.data(), block.size());
    if (count <= 0) return false;
    const std::span<char> bytes(block.data(), static_cast<std::size_t>(count));
    if (mayChange) change_(bytes);
    return send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL) == count;
  }

  int listener_;
  sockaddr_un bus_;
  MeddlingBus::Change change_;
  std::atomic<int>& closed_;
  std::vector<Pair> pairs_;
};

}  // namespace

MeddlingBus::MeddlingBus(const std::string& bus, Change change)
    : closed_(new (sharedMemory()) std::atomic<int>(0)) {
  const int listener = newSocket();
  const sockaddr_un name = nameOf(path());
  if (bind(listener, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
      listen(listener, 16) != 0) {
    throw std::runtime_error("no socket");
  }
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Meddler(listener, bus, std::move(change), *closed_).run();
  }
  close(listener);
}

MeddlingBus::~MeddlingBus() {
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  munmap(closed_, sizeof *closed_);
}

MeddlingBus::Change changingRandomBits(unsigned seed, unsigned rarity) {
  return [random = std::mt19937(seed), rarity](std::span<char> bytes) mutable {
    if (random() % rarity != 0) return;
    char& byte = bytes[random() % bytes.size()];
    byte = static_cast<char>(byte ^ (1 << (random() % 8)));
  };
}

MeddlingBus::Change replacing(const std::string& text, const std::string& other) {
  return [text, other](std::span<char> bytes) {
    for (auto rest = bytes;;) {
      const auto found = std::ranges::search(rest, text);
      if (found.empty()) return;
      std::ranges::copy(other, found.begin());
      rest = {found.end(), rest.end()};
    }
  };
}

}  // namespace quorrix::test
