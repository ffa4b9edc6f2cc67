// The commands on file systems that differ from the usual ones: without locks, without
// syncs of folders, with refused renames, with names in another case or encoding, with a
// quota, and full.
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <iostream>

#include "archives/folder_list.h"
#include "platform/linux/posix_file_system.h"
#include "reliability/program_folder.h"
#include "reliability/swept_commands.h"
#include "support/linux/system_calls.h"

namespace quorrix {
namespace {

using test::ProgramFolder;
using test::SystemCall;
using test::SystemCallInfo;
using Strings = std::vector<std::string>;

class UnwatchedStep final : public test::SweptStep {
 public:
  void begin(QWidget&) override {}
  void end() override {}
  bool isToBeRepeated() override { return false; }
};

class OddFileSystems : public testing::Test {
 protected:
  using Setting = std::function<void(test::WatchedSystemCalls&)>;

  // Runs the command on a file system of this kind; returns the messages about failures.
  Strings run(const test::SweptCommand& command, const Setting& set) {
    folder_.give(command.files);
    PosixFileSystem files;
    test::User user(files, folder_.path());
    test::WatchedSystemCalls calls(folder_.path());
    set(calls);
    if (!command.isStartUp && !user.start()) ADD_FAILURE() << "the start failed";
    UnwatchedStep step;
    command.run(user, step);
    return user.messageBox().sentences;
  }

  // Expects that every command succeeds and leaves the same files as on a usual disk.
  void expectNoDifference(const std::function<int(const SystemCallInfo&)>& answer) {
    int refused = 0;
    for (const test::SweptCommand& command : test::sweptCommands()) {
      SCOPED_TRACE(command.name);
      EXPECT_EQ(run(command, [](test::WatchedSystemCalls&) {}), Strings{});
      const ProgramFolder::State usual = folder_.state();
      EXPECT_EQ(run(command,
                    [&](test::WatchedSystemCalls& calls) {
                      calls.beforeEach([&](const SystemCallInfo& call) {
                        const int code = answer(call);
                        if (code != 0) ++refused;
                        return code;
                      });
                    }),
                Strings{});
      EXPECT_TRUE(folder_.state() == usual);
    }
    EXPECT_GT(refused, 0);
    std::cout << "measured: " << refused << " calls refused, without effect\n";
  }

  static test::SweptCommand commandOf(const std::string& name) {
    for (const test::SweptCommand& command : test::sweptCommands()) {
      if (command.name == name) return command;
    }
    throw std::logic_error("no command " + name);
  }

  ProgramFolder folder_;
};

bool isFolder(const SystemCallInfo& call) {
  struct stat status {};
  return ::fstat(call.descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

TEST_F(OddFileSystems, WithoutLocksAreUsedWithoutLocks) {
  for (const int code : {ENOLCK, ENOTSUP, ENOSYS}) {
    SCOPED_TRACE(code);
    expectNoDifference(
        [code](const SystemCallInfo& call) { return call.kind == SystemCall::Lock ? code : 0; });
  }
}

// As some network file systems answer for a descriptor that cannot write.
TEST_F(OddFileSystems, WithoutLocksForReadersAreReadWithoutLocks) {
  expectNoDifference([](const SystemCallInfo& call) {
    const bool isShared = (call.flags & LOCK_SH) != 0;
    return call.kind == SystemCall::Lock && isShared ? EBADF : 0;
  });
}

TEST_F(OddFileSystems, WithoutSyncsOfFoldersAreUsedWithoutThem) {
  expectNoDifference([](const SystemCallInfo& call) {
    return call.kind == SystemCall::Sync && isFolder(call) ? EINVAL : 0;
  });
}

// Loading and the end of archiving replace files.
TEST_F(OddFileSystems, ThatRefuseToRenameOverAFileKeepTheOldFile) {
  const auto refuse = [](test::WatchedSystemCalls& calls) {
    calls.beforeEach([](const SystemCallInfo& call) {
      struct stat status {};
      const bool isThere = ::stat(call.to.c_str(), &status) == 0;
      return call.kind == SystemCall::Rename && isThere ? EEXIST : 0;
    });
  };
  const test::SweptCommand load = commandOf("loading an archive");
  EXPECT_EQ(run(load, refuse), Strings{"Unable to load archive. Path/file access error."});
  ProgramFolder::State given(load.files.begin(), load.files.end());
  given.erase("Archives/May/");  // a folder
  EXPECT_TRUE(folder_.state() == given);

  const test::SweptCommand archive = commandOf("archiving to a new folder");
  EXPECT_EQ(run(archive, refuse), Strings{"Unable to archive sites. Path/file access error."});
  const ProgramFolder::State state = folder_.state();
  for (const char* const name : {"nodes.dat", "notes.dat", "purchases.dat", "info.dat"}) {
    EXPECT_TRUE(state.at(std::string("Archives/May/") + name) ==
                archive.files.at(std::string("Data/") + name));
    EXPECT_EQ(state.at(std::string("Data/") + name), "");
  }
  EXPECT_EQ(state.at("Data/load.txt"), "/Quorrix/Archives/April\r\n");
  EXPECT_EQ(state.size(), 9U) << "nothing is left of the line that could not be written";
}

// The archive was written on a system that keeps names in capitals.
TEST_F(OddFileSystems, ThatIgnoreCaseLoadAndReplaceAnArchiveInCapitals) {
  for (const char* const name : {"loading an archive", "archiving to a used folder"}) {
    SCOPED_TRACE(name);
    test::SweptCommand command = commandOf(name);
    EXPECT_EQ(run(command, [](test::WatchedSystemCalls&) {}), Strings{});
    const ProgramFolder::State usual = folder_.state();
    for (const char* const file : {"nodes.dat", "notes.dat", "purchases.dat", "info.dat"}) {
      std::string capitals = file;
      std::ranges::transform(capitals, capitals.begin(), ::toupper);
      auto entry = command.files.extract(std::string("Archives/May/") + file);
      entry.key() = "Archives/May/" + capitals;
      command.files.insert(std::move(entry));
    }
    EXPECT_EQ(run(command, [](test::WatchedSystemCalls& calls) { calls.foldCase(); }), Strings{});
    const ProgramFolder::State folded = folder_.state();
    EXPECT_EQ(folded.size(), usual.size()) << "a file is there under two names";
    for (const auto& [path, bytes] : folded) {
      std::string small = path.substr(path.rfind('/') + 1);
      std::ranges::transform(small, small.begin(), ::tolower);
      const auto same = usual.find(path.substr(0, path.rfind('/') + 1) + small);
      EXPECT_TRUE(same != usual.end() && same->second == bytes) << path;
    }
  }
}

TEST_F(OddFileSystems, WithNamesInAnotherEncodingAreArchivedToAndLoadedFrom) {
  const std::string march = "Archives/M\xe4rz";
  test::SweptCommand command = commandOf("archiving to a new folder");
  command.files[march + "/"] = "";
  folder_.give(command.files);
  PosixFileSystem files;
  test::User user(files, folder_.path());
  ASSERT_TRUE(user.start());
  for (const char* const entry : {"FileArchive", "FileLoadArchive"}) {
    user.choose(entry, [&](QDialog& dialog) {
      test::control<FolderList>(dialog, "Dir1").setPath(folder_.path() / march);
      test::User::press(dialog, "OKButton");
    });
    EXPECT_EQ(user.messageBox().sentences, Strings{});
  }
  ProgramFolder::State state = folder_.state();
  for (const char* const name : {"nodes.dat", "notes.dat", "purchases.dat", "info.dat"}) {
    EXPECT_TRUE(state[march + "/" + name] == command.files.at(std::string("Data/") + name));
    EXPECT_TRUE(state[std::string("Data/") + name] == state[march + "/" + name]);
  }
  EXPECT_EQ(state["Data/load.txt"], (folder_.path() / march).string() + "\r\n");
}

TEST_F(OddFileSystems, ThatKnowNoSuchLettersRefuseTheNameOfAFolder) {
  EXPECT_EQ(run(commandOf("making a folder"),
                [](test::WatchedSystemCalls& calls) {
                  calls.beforeEach([](const SystemCallInfo& call) {
                    return call.kind == SystemCall::MakeFolder ? EILSEQ : 0;
                  });
                }),
            Strings{"Unable to create new archive. Path/file access error."});
}

// A disk on which writing stops working and works again later. A write is cut after 100
// bytes, so most records are half written when the disk fills up.
class FillingDisk : public OddFileSystems {
 protected:
  // How many writes the command makes. Remembers the files after it.
  int writesOf(const test::SweptCommand& command) {
    int writes = 0;
    EXPECT_EQ(run(command,
                  [&](test::WatchedSystemCalls& calls) {
                    calls.cutWritesTo(100);
                    calls.afterEach([&](const SystemCallInfo& call, long) {
                      if (call.kind == SystemCall::Write) ++writes;
                    });
                  }),
              Strings{});
    usual_ = folder_.state();
    return writes;
  }

  // Runs the command twice: on a disk on which its write of this number fails with `code`,
  // and when there is room again.
  void expectToWorkAgain(const test::SweptCommand& command, int failing, int code) {
    folder_.give(command.files);
    PosixFileSystem files;
    test::User user(files, folder_.path());
    ASSERT_TRUE(command.isStartUp || user.start());
    const ProgramFolder::State given = folder_.state();
    const Path failed = runAndFailAt(command, user, failing, code);
    expectToldOf(command, code, user.messageBox().sentences);
    expectWhole(given, failed);
    makeReadyAgain(command, user, given);
    user.messageBox().sentences.clear();
    UnwatchedStep step;
    command.run(user, step);
    EXPECT_EQ(user.messageBox().sentences, Strings{});
    EXPECT_TRUE(folder_.state() == usual_);
  }

 private:
  // Returns the file whose write failed.
  Path runAndFailAt(const test::SweptCommand& command, test::User& user, int failing, int code) {
    Path failed;
    test::WatchedSystemCalls calls(folder_.path());
    calls.cutWritesTo(100);
    calls.beforeEach([&, writes = 0](const SystemCallInfo& call) mutable {
      // Old bytes can always be written again.
      if (call.kind != SystemCall::Write || ++writes != failing) return 0;
      failed = call.path;
      return code;
    });
    UnwatchedStep step;
    command.run(user, step);
    EXPECT_FALSE(failed.empty()) << "no such write";
    return failed.lexically_relative(folder_.path());
  }

  static void expectToldOf(const test::SweptCommand& command, int code, const Strings& told) {
    const auto number = std::ranges::find(test::kSweptNumbers, code == EIO ? 57 : 61);
    const auto at = static_cast<std::size_t>(number - test::kSweptNumbers.begin());
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(std::ranges::any_of(command.stretches, [&](const test::Stretch& stretch) {
      return stretch.told != nullptr && stretch.told->at(at) == told.front();
    })) << told.front();
  }

  // Expects that the file whose write failed is as it was, and each other one as before or
  // after the command. Only an earlier archive may be gone, which is deleted first.
  void expectWhole(const ProgramFolder::State& given, const Path& failed) const {
    const auto holds = [](const ProgramFolder::State& state, const auto& file) {
      const auto found = state.find(file.first);
      return found != state.end() && found->second == file.second;
    };
    const ProgramFolder::State state = folder_.state();
    for (const auto& file : state) {
      const bool isOld = holds(given, file);
      EXPECT_TRUE(isOld || (file.first != failed.string() && holds(usual_, file))) << file.first;
    }
    for (const auto& [name, bytes] : given) {
      EXPECT_TRUE(state.contains(name) || name.starts_with("Archives/")) << name << " is gone";
    }
  }

  // What the user does before archiving again.
  static void makeReadyAgain(const test::SweptCommand& command, test::User& user,
                             const ProgramFolder::State& given) {
    const auto has = [&](test::Remedy remedy) {
      return std::ranges::any_of(command.stretches, [remedy](const test::Stretch& stretch) {
        return stretch.remedy == remedy;
      });
    };
    if (!has(test::Remedy::LoadTheArchive)) return;
    const Path nodes = user.programFolder() / "Data" / "nodes.dat";
    const bool isStillHere = std::filesystem::file_size(nodes) == given.at("Data/nodes.dat").size();
    test::runArchiveCommand(user, isStillHere ? "FileDeleteArchive" : "FileLoadArchive");
  }

  ProgramFolder::State usual_;
};

TEST_F(FillingDisk, LeavesNoHalfRecordAtAnyWriteAndWorksAgainWhenThereIsRoom) {
  int failures = 0;
  for (const test::SweptCommand& command : test::sweptCommands()) {
    const int writes = writesOf(command);
    for (int failing = 1; failing <= writes; ++failing) {
      for (const int code : {ENOSPC, EDQUOT, EIO}) {
        SCOPED_TRACE(std::string(command.name) + " at write " + std::to_string(failing) +
                     " with code " + std::to_string(code));
        expectToWorkAgain(command, failing, code);
        ++failures;
      }
    }
  }
  EXPECT_GT(failures, 0);
  std::cout << "measured: " << failures << " writes failed on a disk that filled up\n";
}

}  // namespace
}  // namespace quorrix
