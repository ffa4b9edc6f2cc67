// The step of a swept command in which a chosen system call fails, and what it leaves.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "reliability/program_folder.h"
#include "reliability/swept_commands.h"
#include "support/faulty_file_system.h"
#include "support/linux/system_calls.h"

namespace quorrix::test {

// A system call that failed.
struct FailedCall {
  SystemCall kind;
  Path path;
  int fileCall;  // the call on the FileSystem that made it, counted from 1
};

// Which of its system calls fail is chosen for each of them.
class FailingStep final : public SweptStep {
 public:
  using Choose = std::function<int(int number, const SystemCallInfo&)>;

  // `choose` is asked before each call, with its number counted from 1, for the errno
  // value with which it fails, or 0.
  FailingStep(User& user, const FaultyFileSystem& files, const ProgramFolder& folder, Choose choose)
      : user_(user), files_(files), folder_(folder), choose_(std::move(choose)) {}

  void begin(QWidget&) override {
    callsBefore_ = files_.calls().size();
    watch_ = std::make_unique<WatchedSystemCalls>(user_.programFolder());
    watch_->beforeEach([this](const SystemCallInfo& call) {
      ++calls_;
      const int code = choose_(calls_, call);
      const auto fileCall = static_cast<int>(files_.calls().size() - callsBefore_);
      if (code != 0) failed = FailedCall{call.kind, call.path, fileCall};
      return code;
    });
  }

  void end() override {
    if (!watch_) return;
    watch_.reset();
    sentences = user_.messageBox().sentences;
    state = folder_.state();
  }

  bool isToBeRepeated() override {
    if (sentences.empty()) return false;
    user_.messageBox().sentences.clear();
    isRepeated = true;
    return true;
  }

  std::optional<FailedCall> failed;
  std::vector<std::string> sentences;
  ProgramFolder::State state;
  bool isRepeated = false;

 private:
  User& user_;
  const FaultyFileSystem& files_;
  const ProgramFolder& folder_;
  std::size_t callsBefore_ = 0;
  int calls_ = 0;
  Choose choose_;
  std::unique_ptr<WatchedSystemCalls> watch_;
};

}  // namespace quorrix::test
