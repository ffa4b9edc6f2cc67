#include "reliability/fault_sweep.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QStringList>
#include <algorithm>
#include <array>
#include <numeric>
#include <optional>

namespace quorrix::test {
namespace {

const Path kProgramFolder = "/Quorrix";

void give(MemoryFileSystem& memory, const Files& files) {
  for (const auto& [path, bytes] : files) {
    if (path.ends_with('/')) {
      memory.givenAFolder(kProgramFolder / path);
    } else {
      memory.givenAFile(kProgramFolder / path, bytes);
    }
  }
}

// The names of the dialogs on the screen, in the order of the alphabet.
std::string openDialogs() {
  QStringList names;
  for (const QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && qobject_cast<const QDialog*>(window) != nullptr) {
      names += window->objectName();
    }
  }
  names.sort();
  return names.join(QLatin1Char(' ')).toStdString();
}

void run(const SweptCommand& command, User& user, SweptStep& step) {
  command.run(user, step);
  step.end();
}

// The messages that the user is shown.
std::vector<std::string> sentencesOf(const Stretch& stretch, std::size_t number) {
  const std::string& told = (*stretch.told)[number];
  return told.empty() ? std::vector<std::string>{} : std::vector{told};
}

bool mayFailAfterwards(FileCall call) {
  constexpr std::array kCalls = {
      FileCall::MakeFolder,    FileCall::OpenRandomAccess, FileCall::DeleteFile, FileCall::CopyFile,
      FileCall::ReplaceByLine, FileCall::WriteAt,          FileCall::Sync};
  return std::ranges::find(kCalls, call) != kCalls.end();
}

// A missing file is created when it is opened for reading, so this is no failure.
bool isMissingFileToRead(FileCall call, std::size_t number) {
  return kSweptNumbers[number] == 53 && call == FileCall::OpenForReading;
}

}  // namespace

struct FaultSweep::Stage {
  // The program runs, except for a command that starts it.
  explicit Stage(const SweptCommand& command) {
    give(memory, command.files);
    memory.givenVolumes({"/", kProgramFolder});
    if (command.isStartUp) {
      user.emplace(files, kProgramFolder);
    } else {
      start();
    }
  }

  // Ends the program, if it runs, and starts it on the same files.
  void start() {
    user.emplace(files, kProgramFolder);
    EXPECT_TRUE(user->start());
  }

  MemoryFileSystem memory;
  FaultyFileSystem files{memory};
  std::optional<User> user;
};

class FaultSweep::Step final : public SweptStep {
 public:
  Step(Stage& stage, std::function<void(FaultyFileSystem&)> arrange)
      : stage_(stage), arrange_(std::move(arrange)) {}

  void begin(QWidget& working) override {
    working_ = &working;
    stage_.user->messageBox().sentences.clear();
    stage_.user->messageBox().whileCritical = [this] { lookAtMessage(); };
    stage_.files.reset();
    arrange_(stage_.files);
  }

  void end() override {
    if (working_.isNull() || isOver_) return;
    isOver_ = true;
    open = openDialogs();
    calls = stage_.files.calls();
    sentences = stage_.user->messageBox().sentences;
    state = stage_.memory.contents();
    EXPECT_EQ(stage_.memory.openFiles(), 0);
    stage_.user->messageBox().whileCritical = {};
    stage_.files.reset();
  }

  bool isToBeRepeated() override {
    if (sentences.empty()) return false;
    stage_.user->messageBox().sentences.clear();
    isRepeated = true;
    return true;
  }

  std::string open;
  std::vector<FileCall> calls;
  std::vector<std::string> sentences;
  State state;
  bool isRepeated = false;

 private:
  void lookAtMessage() const {
    EXPECT_EQ(working_->cursor().shape(), Qt::ArrowCursor) << "the pointer during the message";
    EXPECT_EQ(stage_.memory.openFiles(), 0) << "during the message";
  }

  Stage& stage_;
  std::function<void(FaultyFileSystem&)> arrange_;
  QPointer<QWidget> working_;
  bool isOver_ = false;
};

int FaultSweep::run() {
  SCOPED_TRACE(command_.name);
  runUndisturbed();
  int points = 0;
  for (std::size_t number = 0; number < kSweptNumbers.size(); ++number) {
    points += pointsWith(number, false) + pointsWith(number, true);
  }
  return points;
}

int FaultSweep::pointsWith(std::size_t number, bool isAfterwards) {
  int points = 0;
  for (int call = 1; call <= static_cast<int>(calls_.size()); ++call) {
    const FileCall kind = calls_[static_cast<std::size_t>(call) - 1];
    if (isAfterwards && !mayFailAfterwards(kind)) continue;
    EXPECT_TRUE(strikes({call, number, isAfterwards}));
    ++points;
  }
  if (!isAfterwards) {
    EXPECT_FALSE(strikes({static_cast<int>(calls_.size()) + 1, number, false}));
  }
  return points;
}

void FaultSweep::runUndisturbed() {
  Stage stage(command_);
  Step step(stage, [&](FaultyFileSystem& files) {
    files.onEveryCall([&] { statesAt_.push_back(stage.memory.contents()); });
  });
  test::run(command_, *stage.user, step);
  EXPECT_EQ(step.sentences, std::vector<std::string>{});
  EXPECT_EQ(step.open, command_.open);
  calls_ = step.calls;
  stateAfter_ = step.state;
  const int described =
      std::accumulate(command_.stretches.begin(), command_.stretches.end(), 0,
                      [](int sum, const Stretch& stretch) { return sum + stretch.calls; });
  std::string kinds;
  for (const FileCall call : calls_) kinds += " " + std::to_string(static_cast<int>(call));
  EXPECT_EQ(described, static_cast<int>(calls_.size())) << "the calls are:" << kinds;
}

bool FaultSweep::strikes(const Fault& fault) {
  SCOPED_TRACE(std::to_string(kSweptNumbers[fault.number]) +
               (fault.isAfterwards ? " after" : " at") + " call " + std::to_string(fault.call));
  auto stage = std::make_unique<Stage>(command_);
  Step step(*stage, [&](FaultyFileSystem& files) {
    const int number = kSweptNumbers[fault.number];
    fault.isAfterwards ? files.failAfterCall(fault.call, number)
                       : files.failAtCall(fault.call, number);
  });
  test::run(command_, *stage->user, step);
  if (static_cast<int>(step.calls.size()) < fault.call) return false;
  const FileCall failed = step.calls[static_cast<std::size_t>(fault.call) - 1];
  if (stretchOf(fault.call).told == nullptr || isMissingFileToRead(failed, fault.number)) {
    expectPassedOver(*stage, step);
    expectToSucceedNext(std::move(stage), Remedy::None, step.state);
    return true;
  }
  expectTold(*stage, step, fault);
  // After a call that took effect, what the next one finds counts.
  const int finding = fault.isAfterwards ? fault.call + 1 : fault.call;
  if (!step.isRepeated)
    expectToSucceedNext(std::move(stage), stretchOf(finding).remedy, step.state);
  return true;
}

void FaultSweep::expectTold(Stage& stage, const Step& step, const Fault& fault) {
  const Stretch& stretch = stretchOf(fault.call);
  EXPECT_EQ(step.sentences, sentencesOf(stretch, fault.number));
  EXPECT_EQ(step.open, stretch.open);
  EXPECT_TRUE(step.state == stateAt(fault)) << "a file changed after the call that failed";
  MainForm& form = stage.user->form();
  EXPECT_EQ(form.isVisible(), !command_.isStartUp);
  EXPECT_FALSE(form.isTracking());
  if (!command_.isStartUp) {
    EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);
  }
  if (!step.isRepeated) return;
  EXPECT_EQ(stage.user->messageBox().sentences, std::vector<std::string>{}) << "when repeated";
  if (step.state != stateAfter_) {
    EXPECT_TRUE(stage.memory.contents() == stateAfter_);
  }
}

// Files that could not be created are still missing.
void FaultSweep::expectPassedOver(Stage& stage, const Step& step) {
  EXPECT_EQ(step.sentences, std::vector<std::string>{});
  EXPECT_EQ(step.open, command_.open);
  for (const auto& [path, bytes] : stateAfter_) {
    const auto file = step.state.find(path);
    const std::string found = file == step.state.end() ? "" : file->second;
    EXPECT_TRUE(found == bytes) << path;
  }
  for (const auto& [path, bytes] : step.state) EXPECT_TRUE(stateAfter_.contains(path)) << path;
  const MainForm& form = stage.user->form();
  EXPECT_TRUE(form.isVisible());
  EXPECT_FALSE(form.isTracking());
  EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);
}

void FaultSweep::expectToSucceedNext(std::unique_ptr<Stage> stage, Remedy remedy,
                                     const State& afterFailure) {
  SCOPED_TRACE("the same command afterwards");
  const auto nothing = [](FaultyFileSystem&) {};
  switch (remedy) {
    case Remedy::None:
      if (command_.isStartUp) stage->user.emplace(stage->files, kProgramFolder);
      break;
    case Remedy::DeleteTheArchive:
      runArchiveCommand(*stage->user, "FileDeleteArchive");
      break;
    case Remedy::LoadTheArchive:
      runArchiveCommand(*stage->user, "FileLoadArchive");
      break;
    case Remedy::StartAgain:
      stage->start();
      stage->user->visit("http://one.two.three/a");
      break;
  }
  Step again(*stage, nothing);
  test::run(command_, *stage->user, again);
  EXPECT_EQ(again.sentences, std::vector<std::string>{});
  EXPECT_EQ(again.open, command_.open);
  if (afterFailure != stateAfter_) {
    EXPECT_TRUE(again.state == stateAfter_);
  }
}

const Stretch& FaultSweep::stretchOf(int call) const {
  int last = 0;
  for (const Stretch& stretch : command_.stretches) {
    last += stretch.calls;
    if (call <= last) return stretch;
  }
  return command_.stretches.back();
}

const FaultSweep::State& FaultSweep::stateAt(const Fault& fault) const {
  const auto next = static_cast<std::size_t>(fault.isAfterwards ? fault.call : fault.call - 1);
  return next < statesAt_.size() ? statesAt_[next] : stateAfter_;
}

}  // namespace quorrix::test
