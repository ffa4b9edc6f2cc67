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
// bytes, so a record is half written when the disk fills up.
class FillingDisk : public OddFileSystems {
 protected:
  // Runs the command twice: on the disk that fills up, and when there is room again.
  void expectToWorkAgain(const std::string& name, int code, const Strings& told) {
    SCOPED_TRACE(name);
    const test::SweptCommand command = commandOf(name);
    EXPECT_EQ(run(command, [](test::WatchedSystemCalls&) {}), Strings{});
    const ProgramFolder::State usual = folder_.state();
    folder_.give(command.files);
    PosixFileSystem files;
    test::User user(files, folder_.path());
    ASSERT_TRUE(user.start());
    const ProgramFolder::State given = folder_.state();
    UnwatchedStep step;
    {
      test::WatchedSystemCalls calls(folder_.path());
      calls.cutWritesTo(100);
      calls.beforeEach([code, writes = 0](const SystemCallInfo& call) mutable {
        // The first bytes fit. Old bytes can always be written again.
        return call.kind == SystemCall::Write && ++writes == 3 ? code : 0;
      });
      command.run(user, step);
    }
    EXPECT_EQ(user.messageBox().sentences, told);
    EXPECT_TRUE(folder_.state() == given) << "a record is half written";
    user.messageBox().sentences.clear();
    command.run(user, step);
    EXPECT_EQ(user.messageBox().sentences, Strings{});
    EXPECT_TRUE(folder_.state() == usual);
  }
};

TEST_F(FillingDisk, LeavesNoHalfRecordAndWorksAgainWhenThereIsRoom) {
  for (const int code : {ENOSPC, EDQUOT, EIO}) {
    SCOPED_TRACE(code);
    const bool isFull = code != EIO;
    const std::string reason = isFull ? "Unknown error." : "Device I/O error.";
    const std::string stops = isFull ? "Disk full." : "Device I/O error.";
    expectToWorkAgain("a visit to a new site", code, {stops + " Stopping tracking."});
    expectToWorkAgain("a visit to a known site", code, {stops + " Stopping tracking."});
    expectToWorkAgain("saving new notes", code, {"Unable to save notes. " + reason});
    expectToWorkAgain("replacing notes", code, {"Unable to save notes. " + reason});
    expectToWorkAgain("deleting notes", code, {"Unable to delete notes. " + reason});
    expectToWorkAgain("replacing a user ID", code,
                      {"Unable to save user ID and password. " + reason});
    expectToWorkAgain("saving a purchase", code,
                      {"Unable to save purchase information. " + reason});
    expectToWorkAgain("loading an archive", code,
                      {"Unable to load archive. " + (isFull ? "Disk full." : reason)});
  }
}

}  // namespace
}  // namespace quorrix
