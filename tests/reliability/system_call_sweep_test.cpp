// Every system call of every command fails once, under the real file system code. Left out
// are fstatat(), which the program calls only for links in a listed folder, and close(),
// whose failure it ignores because it has synced everything before.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <optional>
#include <set>

#include "platform/linux/posix_file_system.h"
#include "reliability/failing_step.h"
#include "reliability/program_folder.h"
#include "reliability/swept_commands.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/linux/system_calls.h"

namespace quorrix {
namespace {

using test::FailedCall;
using test::FailingStep;
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
    case SystemCall::OpenFolder:
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
    case SystemCall::ReadFolder:
    case SystemCall::Access:
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

bool isUnfinished(const std::string& path) { return path.ends_with(".quorrix-new"); }

// A call that only looks at files may fail without effect: the program does without the
// answer, or asks once more.
bool onlyLooks(SystemCall call) {
  return call == SystemCall::Open || call == SystemCall::Stat || call == SystemCall::Lock ||
         call == SystemCall::Read || call == SystemCall::Access;
}

class SystemCallSweep : public testing::Test {
 protected:
  struct Outcome {
    std::optional<FailedCall> failed;
    std::vector<std::string> sentences;
    State state;
  };

  // Runs the command. Starts the program again on a state that no run left before.
  [[nodiscard]] Outcome run(const test::SweptCommand& command, const FailingStep::Choose& choose) {
    folder_.give(command.files);
    PosixFileSystem disk;
    test::FaultyFileSystem files(disk);  // only counts
    test::User user(files, folder_.path());
    if (!command.isStartUp && !user.start()) ADD_FAILURE() << "the start failed";
    FailingStep step(user, files, folder_, choose);
    command.run(user, step);
    step.end();
    EXPECT_EQ(openDescriptorsIn(folder_.path()), 0);
    EXPECT_FALSE(step.state.empty()) << "the step was not begun";
    const bool isNewState = startedOn_.insert(step.state).second;
    if (isNewState && !step.isRepeated) expectToStart(disk);
    expectToSucceedNext(command, user, files, step);
    if (isNewState && step.isRepeated) {
      folder_.give(step.state);
      expectToStart(disk);
    }
    return {step.failed, step.sentences, step.state};
  }

  void expectToStart(FileSystem& disk) const {
    test::User next(disk, folder_.path());
    EXPECT_TRUE(next.start());
  }

  // After a failure, the same command succeeds, unless the user has to do something before.
  void expectToSucceedNext(const test::SweptCommand& command, test::User& user,
                           const test::FaultyFileSystem& files, const FailingStep& failed) {
    if (failed.sentences.empty() || command.isStartUp) return;
    if (!failed.isRepeated) {
      const int fileCall = failed.failed->fileCall;
      if (needsRemedy(command, fileCall) || needsRemedy(command, fileCall + 1)) return;
      user.messageBox().sentences.clear();
      FailingStep again(user, files, folder_, [](int, const SystemCallInfo&) { return 0; });
      command.run(user, again);
      again.end();
    }
    EXPECT_EQ(user.messageBox().sentences, std::vector<std::string>{}) << "when repeated";
    if (failed.state != stateAfter_) {
      EXPECT_TRUE(folder_.state() == stateAfter_) << "when repeated";
    }
    ++repeated_;
  }

  static bool needsRemedy(const test::SweptCommand& command, int fileCall) {
    const test::Stretch* const stretch = stretchOf(command, fileCall);
    return stretch != nullptr && stretch->remedy != test::Remedy::None;
  }

  // The file states that the undisturbed command passes through.
  void runUndisturbed(const test::SweptCommand& command) {
    kinds_.clear();
    statesAt_.clear();
    const Outcome outcome = run(command, [&](int, const SystemCallInfo& call) {
      kinds_.push_back(call.kind);
      statesAt_.push_back(withoutUnfinished(folder_.state()));
      return 0;
    });
    EXPECT_EQ(outcome.sentences, std::vector<std::string>{});
    stateAfter_ = outcome.state;
  }

  static State withoutUnfinished(State state) {
    std::erase_if(state, [](const auto& file) { return isUnfinished(file.first); });
    return state;
  }

  static const test::Stretch* stretchOf(const test::SweptCommand& command, int fileCall) {
    int last = 0;
    for (const test::Stretch& stretch : command.stretches) {
      last += stretch.calls;
      if (fileCall <= last) return &stretch;
    }
    return nullptr;
  }

  // A failed look at a file that is to be replaced counts as one that is there, and opening
  // it then fails. A failed look at an unfinished copy counts as one that another program
  // is writing.
  static bool isToldAs(const std::string& sentence, const test::Sentences& told,
                       const FailedCall& failed, int number) {
    const auto isSentenceOf = [&](int meant) {
      const auto swept = std::ranges::find(test::kSweptNumbers, meant);
      return told[static_cast<std::size_t>(swept - test::kSweptNumbers.begin())] == sentence;
    };
    if (isSentenceOf(number)) return true;
    if (failed.kind != SystemCall::Stat) return false;
    return isSentenceOf(isUnfinished(failed.path.string()) ? 75 : 53);
  }

  // The command went on. It did everything, except that a start leaves it to the next
  // operation on a missing file to create it.
  void expectDone(const Outcome& outcome, const test::Stretch& stretch) const {
    const bool isPassedOver = stretch.told == nullptr;
    EXPECT_TRUE(isPassedOver || onlyLooks(outcome.failed->kind));
    State expected = stateAfter_;
    const std::string name = outcome.failed->path.lexically_relative(folder_.path()).string();
    const auto file = expected.find(name);
    const bool isEmpty = file != expected.end() && file->second.empty();
    if (isPassedOver && isEmpty && !outcome.state.contains(name)) expected.erase(file);
    EXPECT_TRUE(withoutUnfinished(outcome.state) == expected);
  }

  // An unfinished copy that could not be removed is removed by the next one.
  static void expectUnfinishedOnlyIfNotRemoved(const Outcome& outcome) {
    for (const auto& [path, bytes] : outcome.state) {
      if (!isUnfinished(path)) continue;
      EXPECT_TRUE(outcome.failed->kind == SystemCall::Unlink ||
                  outcome.failed->kind == SystemCall::Stat)
          << path;
    }
  }

  void expectFailureWithoutDamage(const test::SweptCommand& command, int failing,
                                  const Fault& fault) {
    const Outcome outcome = run(
        command, [&](int call, const SystemCallInfo&) { return call == failing ? fault.code : 0; });
    ASSERT_TRUE(outcome.failed);
    const test::Stretch* const stretch = stretchOf(command, outcome.failed->fileCall);
    ASSERT_NE(stretch, nullptr);
    expectUnfinishedOnlyIfNotRemoved(outcome);
    if (outcome.sentences.empty()) {
      ++untold_;
      return expectDone(outcome, *stretch);
    }
    ASSERT_NE(stretch->told, nullptr) << outcome.sentences[0];
    ASSERT_EQ(outcome.sentences.size(), 1U);
    EXPECT_TRUE(isToldAs(outcome.sentences[0], *stretch->told, *outcome.failed, fault.number))
        << outcome.sentences[0];
    const State& before = statesAt_[static_cast<std::size_t>(failing) - 1];
    EXPECT_TRUE(withoutUnfinished(outcome.state) == before)
        << "a file is not as it was when the call failed";
  }

  ProgramFolder folder_;
  std::vector<SystemCall> kinds_;  // of the calls of the undisturbed command
  std::vector<State> statesAt_;    // before each of them
  std::set<State> startedOn_;
  State stateAfter_;
  int untold_ = 0;    // failures without a message
  int repeated_ = 0;  // commands that succeeded after a failure
};

TEST_F(SystemCallSweep, LeavesNoFileOpenAndNoneHalfWritten) {
  const auto start = std::chrono::steady_clock::now();
  int points = 0;
  for (const test::SweptCommand& command : test::sweptCommands()) {
    SCOPED_TRACE(command.name);
    runUndisturbed(command);
    for (std::size_t call = 1; call <= kinds_.size(); ++call) {
      for (const Fault& fault : faultsOf(kinds_[call - 1])) {
        SCOPED_TRACE(std::to_string(fault.code) + " at system call " + std::to_string(call) +
                     " of kind " + std::to_string(static_cast<int>(kinds_[call - 1])));
        expectFailureWithoutDamage(command, static_cast<int>(call), fault);
        ++points;
      }
    }
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::cout << "measured: " << points << " system calls failed in turn, " << untold_
            << " of them without a message; " << repeated_ << " commands then succeeded; in "
            << taken.count() << " s\n";
}

// Otherwise an earlier archive that is the working file under another name would be
// deleted.
TEST_F(SystemCallSweep, TakesNoFilesForDifferentOnesThatItCannotLookAt) {
  folder_.give({{"Data/nodes.dat", "record"}});
  const Path file = folder_.path() / "Data" / "nodes.dat";
  const Path link = folder_.path() / "link";
  std::filesystem::create_symlink(file, link);
  PosixFileSystem files;
  for (int failing = 1; failing <= 3; ++failing) {
    SCOPED_TRACE(failing);
    test::WatchedSystemCalls calls(folder_.path());
    calls.beforeEach([failing, count = 0](const SystemCallInfo&) mutable {
      return ++count == failing ? EIO : 0;
    });
    EXPECT_EQ(test::failureNumberOf([&] { return files.isSameFile(file, link); }), 57);
  }
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
