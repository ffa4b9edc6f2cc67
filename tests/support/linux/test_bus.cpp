#include "support/linux/test_bus.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace quorrix::test {

TestBus::TestBus(TestBusOptions options) : options_(options) {
  std::string pattern = std::filesystem::temp_directory_path() / "quorrix-bus-XXXXXX";
  if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
  folder_ = pattern;
  std::ofstream(folder_ / "bus.conf")
      << "<busconfig><type>session</type><listen>" << address() << "</listen>"
      << "<auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/>"
      << "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/><allow "
         "own=\"*\"/></policy><limit name=\"max_completed_connections\">"
      << options_.mostClients << "</limit></busconfig>\n";
  start();
}

TestBus::~TestBus() {
  kill();
  std::filesystem::remove_all(folder_);
}

std::string TestBus::address() const {
  return (options_.isAbstract ? "unix:abstract=" : "unix:path=") + (folder_ / "bus").string();
}

// The daemon writes its address once it listens, so reading that waits for it.
void TestBus::start() {
  int ready[2];
  if (pipe(ready) != 0) throw std::runtime_error("no pipe");
  const std::string config = "--config-file=" + (folder_ / "bus.conf").string();
  const std::string print = "--print-address=" + std::to_string(ready[1]);
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    execlp("dbus-daemon", "dbus-daemon", "--nofork", config.c_str(), print.c_str(), nullptr);
    _exit(127);
  }
  close(ready[1]);
  char byte = 0;
  const bool started = read(ready[0], &byte, 1) == 1;
  close(ready[0]);
  if (!started) throw std::runtime_error("dbus-daemon does not start");
}

void TestBus::kill() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

void TestBus::restart() {
  kill();
  start();
}

void TestBus::freeze() {
  ::kill(process_, SIGSTOP);
  waitpid(process_, nullptr, WUNTRACED);
}

void TestBus::thaw() { ::kill(process_, SIGCONT); }

}  // namespace quorrix::test
