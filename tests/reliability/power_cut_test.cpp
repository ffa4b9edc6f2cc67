// A power cut at every moment of every command, on the disk as the real file system code
// leaves it.
#include "reliability/power_cut.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

#include "platform/linux/posix_file_system.h"
#include "reliability/program_folder.h"
#include "reliability/swept_commands.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using State = test::PowerCut::State;

constexpr const char* kDataFiles[] = {"nodes.dat", "notes.dat", "purchases.dat", "info.dat"};

// Of the working data of the commands.
constexpr const char* kSites[] = {"four.five.six",   "host1.two.three", "host2.two.three",
                                  "host3.two.three", "host4.two.three", "host5.two.three",
                                  "host6.two.three", "one.two.three/a"};

// --- what the tests below rely on ------------------------------------------------------------

using test::DiskStep;

test::DiskContents oldFile() {
  return {.names = {{"/d/f", 1}}, .bytes = {{1, "old"}}, .folders = {"/d"}};
}

TEST(PowerCut, LosesBytesThatWereNotSynced) {
  const test::PowerCut disk(oldFile(),
                            {{.kind = DiskStep::Write, .file = 1, .offset = 3, .bytes = "new"},
                             {.kind = DiskStep::SyncFile, .file = 1}});
  const State old{{"/d/", ""}, {"/d/f", "old"}};
  const State unwritten{{"/d/", ""}, {"/d/f", std::string("old\0\0\0", 6)}};
  const State whole{{"/d/", ""}, {"/d/f", "oldnew"}};
  EXPECT_EQ(disk.statesAfter(1), (std::set<State>{old, unwritten, whole}));
  EXPECT_EQ(disk.statesAfter(2), std::set<State>{whole});
}

TEST(PowerCut, TearsAWriteBetweenBlocks) {
  const test::PowerCut disk(
      {.names = {{"/d/f", 1}}, .bytes = {{1, std::string(1024, 'o')}}, .folders = {"/d"}},
      {{.kind = DiskStep::Write, .file = 1, .offset = 500, .bytes = std::string(24, 'n')}});
  const auto bytes = [](char first, char second) {
    return State{{"/d/", ""},
                 {"/d/f", std::string(500, 'o') + std::string(12, first) + std::string(12, second) +
                              std::string(500, 'o')}};
  };
  EXPECT_EQ(disk.statesAfter(1),
            (std::set<State>{bytes('o', 'o'), bytes('n', 'o'), bytes('o', 'n'), bytes('n', 'n')}));
}

TEST(PowerCut, KeepsANameOnlyWhenItsFolderWasSynced) {
  const test::PowerCut disk(oldFile(), {{.kind = DiskStep::Unlink, .path = "/d/f"},
                                        {.kind = DiskStep::SyncFolder, .path = "/d"}});
  const State removed{{"/d/", ""}};
  EXPECT_EQ(disk.statesAfter(1), (std::set<State>{{{"/d/", ""}, {"/d/f", "old"}}, removed}));
  EXPECT_EQ(disk.statesAfter(2), std::set<State>{removed});
}

TEST(PowerCut, LosesTheFilesOfAFolderThatWasNotSynced) {
  const test::PowerCut disk({.names = {}, .bytes = {}, .folders = {"/d"}},
                            {{.kind = DiskStep::MakeFolder, .path = "/d/new"},
                             {.kind = DiskStep::Create, .file = 1, .path = "/d/new/f"},
                             {.kind = DiskStep::SyncFolder, .path = "/d/new"},
                             {.kind = DiskStep::SyncFolder, .path = "/d"}});
  const State lost{{"/d/", ""}};
  const State whole{{"/d/", ""}, {"/d/new/", ""}, {"/d/new/f", ""}};
  EXPECT_EQ(disk.statesAfter(3), (std::set<State>{lost, whole}));
  EXPECT_EQ(disk.statesAfter(4), std::set<State>{whole});
}

TEST(PowerCut, MayRenameAFileBeforeItsBytesAreThere) {
  const test::PowerCut disk(
      oldFile(), {{.kind = DiskStep::Create, .file = 2, .path = "/d/new"},
                  {.kind = DiskStep::Write, .file = 2, .bytes = "new"},
                  {.kind = DiskStep::Rename, .file = 2, .path = "/d/new", .to = "/d/f"}});
  EXPECT_TRUE(disk.statesAfter(3).contains({{"/d/", ""}, {"/d/f", ""}}));
}

// --- the commands ------------------------------------------------------------------------------

// Records what a command does to the disk.
class JournaledStep final : public test::SweptStep {
 public:
  explicit JournaledStep(const Path& folder) : folder_(folder) {}

  void begin(QWidget&) override { journal_.emplace(folder_); }

  void end() override {
    if (!journal_) return;
    before = journal_->before();
    steps = journal_->steps();
    journal_.reset();
    after = contentsOf(folder_);
  }

  bool isToBeRepeated() override { return false; }

  test::DiskContents before;
  std::vector<test::DiskStep> steps;
  State after;  // what is really in the folder

 private:
  static State contentsOf(const Path& folder) {
    State contents{{folder.string() + "/", ""}};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const std::string path = entry.path().string();
      if (entry.is_directory()) {
        contents[path + "/"] = "";
      } else {
        std::ifstream file(path, std::ios::binary);
        contents[path].assign(std::istreambuf_iterator<char>(file), {});
      }
    }
    return contents;
  }

  Path folder_;
  std::optional<test::DiskJournal> journal_;
};

class PowerCutOfCommands : public testing::Test {
 protected:
  // Runs the command on the real disk.
  test::PowerCut journalOf(const test::SweptCommand& command) {
    folder_.give(command.files);
    program_ = folder_.path().string();
    PosixFileSystem files;
    test::User user(files, folder_.path());
    if (!command.isStartUp && !user.start()) ADD_FAILURE() << "the start failed";
    JournaledStep step(folder_.path());
    command.run(user, step);
    step.end();
    EXPECT_EQ(user.messageBox().sentences, std::vector<std::string>{});
    steps_ = step.steps;
    test::PowerCut disk(step.before, step.steps);
    EXPECT_TRUE(disk.seenAfter(steps_.size()) == step.after) << "a step was not recorded";
    return disk;
  }

  // The files of the state, without what is left of an unfinished copy.
  static State withoutUnfinished(const State& state) {
    State files;
    for (const auto& [path, bytes] : state) {
      if (!path.ends_with(".quorrix-new")) files.emplace(path, bytes);
    }
    return files;
  }

  // A command either changes records in place or replaces whole files.
  [[nodiscard]] bool isInPlace() const {
    return std::ranges::all_of(steps_, [](const test::DiskStep& step) {
      return step.kind == test::DiskStep::Write || step.kind == test::DiskStep::SyncFile ||
             step.kind == test::DiskStep::SyncFolder;
    });
  }

  // No byte is anything but what it was or what it becomes, so every record that the
  // command leaves alone is intact.
  static void expectOldOrNewBytes(const State& state, const State& before, const State& after) {
    for (const auto& [path, old] : before) {
      const std::string& found = state.at(path);
      const std::string& next = after.at(path);
      ASSERT_GE(found.size(), old.size()) << path;
      ASSERT_LE(found.size(), next.size()) << path;
      for (std::size_t i = 0; i < found.size(); ++i) {
        const char was = i < old.size() ? old[i] : '\0';
        ASSERT_TRUE(found[i] == was || found[i] == next[i]) << path << " at " << i;
      }
    }
  }

  // Every file is as it was before the command or as it is afterwards, so none is half
  // there. One that the command creates or removes on its way may be missing.
  static void expectWholeFiles(const State& state, const std::vector<State>& seen) {
    std::set<std::string> paths;
    for (const State& moment : seen) {
      for (const auto& [path, bytes] : moment) paths.insert(path);
    }
    for (const auto& [path, bytes] : state) EXPECT_TRUE(paths.contains(path)) << path;
    for (const std::string& path : paths) {
      if (!state.contains(path)) {
        EXPECT_TRUE(std::ranges::any_of(
            seen, [&path](const State& moment) { return !moment.contains(path); }))
            << path << " is missing";
        continue;
      }
      const auto holds = [&path, &bytes = state.at(path)](const State& moment) {
        const auto file = moment.find(path);
        return file != moment.end() && file->second == bytes;
      };
      EXPECT_TRUE(holds(seen.front()) || holds(seen.back())) << path;
    }
  }

  // What the working folder held is there or in the archive.
  void expectDataSomewhere(const State& state, const State& before) const {
    for (const char* const name : kDataFiles) {
      const std::string working = program_ + "/Data/" + name;
      const std::string archived = program_ + "/Archives/May/" + name;
      const auto holds = [&](const std::string& path) {
        const auto file = state.find(path);
        return file != state.end() && file->second == before.at(working);
      };
      EXPECT_TRUE(holds(working) || holds(archived)) << name;
    }
  }

  // Starts the program on the state. Expects that it shows the sites that the command does
  // not remove.
  void expectToStartOn(const State& state, const State& before, const State& after) {
    test::MemoryFileSystem memory;
    for (const auto& [path, bytes] : state) {
      const std::string name = "/Quorrix" + path.substr(program_.size());
      if (path.ends_with('/')) {
        memory.givenAFolder(name.substr(0, name.size() - 1));
      } else {
        memory.givenAFile(name, bytes);
      }
    }
    test::User user(memory, "/Quorrix");
    EXPECT_TRUE(user.start());
    const std::string nodes = program_ + "/Data/nodes.dat";
    for (const char* const site : kSites) {
      const auto isIn = [&](const State& files) {
        const auto file = files.find(nodes);
        return file != files.end() && file->second.find(site) != std::string::npos;
      };
      if (!isIn(before) || !isIn(after)) continue;
      EXPECT_NE(user.form().tree().find(site), kNoNode) << site;
    }
  }

  test::ProgramFolder folder_;
  std::string program_;
  std::vector<test::DiskStep> steps_;
};

// An empty file that is missing is created by the next start.
State withoutEmpty(State state) {
  std::erase_if(state,
                [](const auto& file) { return file.second.empty() && !file.first.ends_with('/'); });
  return state;
}

TEST_F(PowerCutOfCommands, LosesNoRecordAndLeavesNoHalfCopy) {
  int cuts = 0;
  std::size_t states = 0;
  for (const test::SweptCommand& command : test::sweptCommands()) {
    SCOPED_TRACE(command.name);
    const test::PowerCut disk = journalOf(command);
    const State before = disk.seenAfter(0);
    const State after = disk.seenAfter(steps_.size());
    std::vector<State> seen;
    for (std::size_t count = 0; count <= steps_.size(); ++count) {
      seen.push_back(withoutUnfinished(disk.seenAfter(count)));
    }
    std::set<State> found;
    for (std::size_t count = 0; count <= steps_.size(); ++count, ++cuts) {
      for (const State& state : disk.statesAfter(count)) found.insert(withoutUnfinished(state));
    }
    for (const State& state : found) {
      if (isInPlace()) {
        expectOldOrNewBytes(state, before, after);
      } else {
        expectWholeFiles(state, seen);
      }
      if (std::string_view(command.name).starts_with("archiving")) {
        expectDataSomewhere(state, before);
      }
      expectToStartOn(state, before, after);
    }
    // What was reported as done is on the disk.
    for (const State& state : disk.statesAfter(steps_.size())) {
      EXPECT_EQ(withoutEmpty(state), withoutEmpty(after));
    }
    states += found.size();
  }
  std::cout << "measured: " << cuts << " cuts left " << states << " different disks\n";
}

}  // namespace
}  // namespace quorrix
