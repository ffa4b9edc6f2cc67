// Every system call of every command fails once, under the real file system code.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <set>

#include "platform/linux/posix_file_system.h"
#include "reliability/program_folder.h"
#include "reliability/swept_commands.h"
#include "support/linux/system_calls.h"

namespace quorrix {
namespace {

using test::SystemCall;
using test::SystemCallInfo;

struct Fault {
  int code;    // an errno value
  int number;  // the failure number that it means
};

// What each call really fails with, on a disk that is broken, full or closed to the user.
std::vector<Fault> faultsOf(SystemCall call) {
  constexpr Fault broken{EIO, 57};
  constexpr Fault full{ENOSPC, 61};
  constexpr Fault refused{EACCES, 75};
  switch (call) {
    case SystemCall::Open:
      return {broken, refused, {EMFILE, 67}, {ENOMEM, 7}};
    case SystemCall::Write:
    case SystemCall::SyncData:
    case SystemCall::Sync:
      return {broken, full, {EDQUOT, 61}};
    case SystemCall::Rename:
    case SystemCall::MakeFolder:
      return {broken, full, refused};
    case SystemCall::Unlink:
      return {broken, refused};
    case SystemCall::Stat:
    case SystemCall::Lock:
    case SystemCall::Read:
    case SystemCall::Truncate:
      return {broken};
  }
  return {};
}

using test::ProgramFolder;
using State = ProgramFolder::State;

// The descriptors of this program on files and folders in the folder.
int openDescriptorsIn(const Path& folder) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code closed;
    const Path file = std::filesystem::read_symlink(entry.path(), closed);
    if (file.native().starts_with(folder.native())) ++count;
  }
  return count;
}

// The step of a command whose n-th system call fails; 0 for none.
class FailingStep final : public test::SweptStep {
 public:
  using Choose = std::function<int(int number, const SystemCallInfo&)>;

  // `choose` is asked before each call, with its number counted from 1, for the errno
  // value with which it fails, or 0.
  FailingStep(const Path& folder, Choose choose) : folder_(folder), choose_(std::move(choose)) {}

  void begin(QWidget&) override {
    watch_ = std::make_unique<test::WatchedSystemCalls>(folder_);
    watch_->beforeEach([this](const SystemCallInfo& call) {
      ++calls_;
      const int code = choose_(calls_, call);
      if (code != 0) failed = call.kind;
      return code;
    });
  }

  void end() override { watch_.reset(); }
  bool isToBeRepeated() override { return false; }

  std::optional<SystemCall> failed;

 private:
  int calls_ = 0;
  Path folder_;
  Choose choose_;
  std::unique_ptr<test::WatchedSystemCalls> watch_;
};

class SystemCallSweep : public testing::Test {
 protected:
  struct Outcome {
    std::optional<SystemCall> failed;
    std::vector<std::string> sentences;
    State state;
  };

  // Runs the command. Starts the program again on a state that no run left before.
  [[nodiscard]] Outcome run(const test::SweptCommand& command, const FailingStep::Choose& choose) {
    folder_.give(command.files);
    PosixFileSystem files;
    test::User user(files, folder_.path());
    if (!command.isStartUp && !user.start()) ADD_FAILURE() << "the start failed";
    FailingStep step(folder_.path(), choose);
    command.run(user, step);
    step.end();
    EXPECT_EQ(openDescriptorsIn(folder_.path()), 0);
    Outcome outcome{step.failed, user.messageBox().sentences, folder_.state()};
    if (startedOn_.insert(outcome.state).second) {
      test::User next(files, folder_.path());
      EXPECT_TRUE(next.start());
    }
    return outcome;
  }

  // The file states that the undisturbed command passes through.
  void runUndisturbed(const test::SweptCommand& command) {
    kinds_.clear();
    seen_.clear();
    const auto note = [this](const State& state) {
      for (const auto& [path, bytes] : state) seen_[path].insert(bytes);
    };
    const Outcome outcome = run(command, [&](int, const SystemCallInfo& call) {
      kinds_.push_back(call.kind);
      note(folder_.state());
      return 0;
    });
    EXPECT_EQ(outcome.sentences, std::vector<std::string>{});
    note(outcome.state);
    stateAfter_ = outcome.state;
  }

  // A failed look at a file may count as a missing one, which is told with its own number.
  static bool isToldBy(const test::SweptCommand& command, const Outcome& outcome, int number) {
    return std::ranges::any_of(command.stretches, [&](const test::Stretch& stretch) {
      if (stretch.told == nullptr) return false;
      for (std::size_t i = 0; i < test::kSweptNumbers.size(); ++i) {
        const bool isMeant = test::kSweptNumbers[i] == number || outcome.failed == SystemCall::Stat;
        if (isMeant && (*stretch.told)[i] == outcome.sentences.at(0)) return true;
      }
      return false;
    });
  }

  void expectFilesOfTheCommand(const Outcome& outcome) const {
    for (const auto& [path, bytes] : outcome.state) {
      const bool isUnfinished = path.ends_with(".quorrix-new");
      if (isUnfinished) {
        // The next copy removes it.
        EXPECT_TRUE(outcome.failed == SystemCall::Unlink || outcome.failed == SystemCall::Stat)
            << path;
        continue;
      }
      const auto file = seen_.find(path);
      EXPECT_TRUE(file != seen_.end() && file->second.contains(bytes)) << path;
    }
  }

  void expectFailureWithoutDamage(const test::SweptCommand& command, int failing,
                                  const Fault& fault) {
    const Outcome outcome = run(
        command, [&](int call, const SystemCallInfo&) { return call == failing ? fault.code : 0; });
    EXPECT_TRUE(outcome.failed);
    expectFilesOfTheCommand(outcome);
    if (outcome.sentences.empty()) return;
    ASSERT_EQ(outcome.sentences.size(), 1U);
    EXPECT_TRUE(isToldBy(command, outcome, fault.number)) << outcome.sentences[0];
  }

  ProgramFolder folder_;
  std::vector<SystemCall> kinds_;  // of the calls of the undisturbed command
  std::map<std::string, std::set<std::string>> seen_;
  std::set<State> startedOn_;
  State stateAfter_;
};

TEST_F(SystemCallSweep, LeavesNoFileOpenAndNoneHalfWritten) {
  const auto start = std::chrono::steady_clock::now();
  int points = 0;
  for (const test::SweptCommand& command : test::sweptCommands()) {
    SCOPED_TRACE(command.name);
    runUndisturbed(command);
    for (std::size_t call = 1; call <= kinds_.size(); ++call) {
      for (const Fault& fault : faultsOf(kinds_[call - 1])) {
        SCOPED_TRACE(std::to_string(fault.code) + " at system call " + std::to_string(call));
        expectFailureWithoutDamage(command, static_cast<int>(call), fault);
        ++points;
      }
    }
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::cout << "measured: " << points << " system calls failed in turn, in " << taken.count()
            << " s\n";
}

// Signals interrupt these calls; the others are never interrupted.
bool mayBeInterrupted(SystemCall call) {
  return call == SystemCall::Open || call == SystemCall::Lock || call == SystemCall::Read ||
         call == SystemCall::Write || call == SystemCall::SyncData || call == SystemCall::Sync;
}

TEST_F(SystemCallSweep, RepeatsACallThatASignalInterrupts) {
  int points = 0;
  for (const test::SweptCommand& command : test::sweptCommands()) {
    SCOPED_TRACE(command.name);
    runUndisturbed(command);
    for (std::size_t failing = 1; failing <= kinds_.size(); ++failing) {
      if (!mayBeInterrupted(kinds_[failing - 1])) continue;
      SCOPED_TRACE("at system call " + std::to_string(failing));
      const Outcome outcome = run(command, [&](int call, const SystemCallInfo&) {
        return call == static_cast<int>(failing) ? EINTR : 0;
      });
      ++points;
      EXPECT_EQ(outcome.sentences, std::vector<std::string>{});
      EXPECT_TRUE(outcome.state == stateAfter_);
    }
  }
  std::cout << "measured: " << points << " system calls were interrupted\n";
}

}  // namespace
}  // namespace quorrix
