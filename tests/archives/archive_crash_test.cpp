// What a program that dies while it archives or loads leaves on the disk.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "archives/archived_folders.h"
#include "support/faulty_file_system.h"
#include "support/linux/child_process.h"

namespace quorrix {
namespace {

constexpr int kRanThrough = 0;
constexpr int kDied = 40;
constexpr int kNotStarted = 41;
constexpr int kFailed = 42;

constexpr const char* kArchive = "FileArchive";
constexpr const char* kLoad = "FileLoadArchive";

using Strings = std::vector<std::string>;

void killBeyond(rlim_t bytes) {
  std::signal(SIGXFSZ, SIG_DFL);
  const rlimit noCore{0, 0};
  const rlimit limit{bytes, bytes};
  ::setrlimit(RLIMIT_CORE, &noCore);
  ::setrlimit(RLIMIT_FSIZE, &limit);
}

class ArchiveCrash : public test::ArchivedFolders {
 protected:
  // Runs the command in a program of its own, on `files`; `atOK` runs just before OK is
  // pressed. Returns the wait status of that program.
  int statusOf(const char* command, test::FaultyFileSystem& files,
               const std::function<void()>& atOK) {
    return test::waitStatusOfAChild([&] {
      test::ProgramOnDisk program(files, folder_.path());
      if (!program.start()) return kNotStarted;
      return program.run(command, may_, atOK).empty() ? kRanThrough : kFailed;
    });
  }

  // The program ends just before its n-th call, after OK, to the file system or to a file
  // opened through it. Returns whether it got that far.
  bool diesAtCall(int n, const char* command) {
    test::FaultyFileSystem dying(files_);
    const int status = statusOf(command, dying, [&] {
      int calls = 0;
      dying.onEveryCall([n, calls]() mutable {
        if (++calls == n) ::_exit(kDied);
      });
    });
    EXPECT_TRUE(WIFEXITED(status)) << "call " << n;
    EXPECT_TRUE(WEXITSTATUS(status) == kDied || WEXITSTATUS(status) == kRanThrough)
        << "call " << n << ": " << WEXITSTATUS(status);
    return WIFEXITED(status) && WEXITSTATUS(status) == kDied;
  }

  // Calls `given` and lets the program die before call 1, again before call 2, and so on,
  // until a run gets to its end. Returns the states found, in order, without consecutive
  // repeats. Expects that the program starts on each of them.
  Strings statesLeftBy(const char* command, const std::function<void()>& given) {
    constexpr int kFarTooMany = 200;
    Strings states;
    bool died = true;
    for (int n = 1; died && n < kFarTooMany; ++n) {
      SCOPED_TRACE("call " + std::to_string(n));
      given();
      died = diesAtCall(n, command);
      const std::string found = state();
      EXPECT_EQ(strangeNames(), Strings{});
      if (!states.empty() && states.back() == found) continue;
      states.push_back(found);
      expectToStartOn(found);
    }
    EXPECT_FALSE(died);
    return states;
  }

  Strings statesLeftBy(const char* command) {
    return statesLeftBy(command, [this] { givenWorkingDataAndAnArchive(); });
  }

  // Runs the command in a program that the system kills when one of its files would grow
  // beyond `bytes`. The limit takes effect at the first call of the kind `from`. What
  // fits is written; the next write kills the program.
  void expectToBeKilledBeyond(rlim_t bytes, test::FileCall from, const char* command) {
    test::FaultyFileSystem watched(files_);
    const int status = statusOf(command, watched, [&] {
      watched.onEveryCall([&] {
        if (watched.calls().back() == from) killBeyond(bytes);
      });
    });
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
  }

  struct Kill {
    rlim_t limit;
    std::string state;
    std::size_t file;  // the one being written, as an index into kNames
  };

  // Expects that the dead program left the beginning of a file under a temporary name.
  void expectLeftBehind(const Kill& kill, const Path& folder, const Strings& contents) {
    EXPECT_EQ(state(), kill.state);
    const std::string name = std::string(kNames[kill.file]) + ".quorrix-new";
    EXPECT_EQ(strangeNames(), Strings{name});
    EXPECT_TRUE(read(folder / name) == contents[kill.file].substr(0, kill.limit));
    expectToStartOn(kill.state);
  }

  // Starts the program again and runs the same command. Returns what the user is told.
  Strings runAgain(const char* command) {
    test::ProgramOnDisk program(files_, folder_.path());
    EXPECT_TRUE(program.start());
    return program.run(command, may_);
  }
};

TEST_F(ArchiveCrash, LeavesEveryFileOfArchivingWhole) {
  EXPECT_EQ(statesLeftBy(kArchive),
            (Strings{"aaaa wwww b", "-aaa wwww b", "--aa wwww b", "---a wwww b", "---- wwww b",
                     "w--- wwww b", "ww-- wwww b", "www- wwww b", "wwww wwww b", "wwww -www b",
                     "wwww --ww b", "wwww ---w b", "wwww ---- b", "wwww 0--- b", "wwww 00-- b",
                     "wwww 000- b", "wwww 0000 b", "wwww 0000 n"}));
}

// Purchases alone do not count as an archive, so they are not deleted first.
TEST_F(ArchiveCrash, LeavesEveryFileOfArchivingOverAFileThatIsThereWhole) {
  const auto givenPurchases = [this] {
    givenWorkingDataAndAnArchive();
    for (const char* name : {"nodes.dat", "notes.dat", "info.dat"}) {
      std::filesystem::remove(may_ / name);
    }
  };
  EXPECT_EQ(statesLeftBy(kArchive, givenPurchases),
            (Strings{"--a- wwww b", "w-a- wwww b", "wwa- wwww b", "www- wwww b", "wwww wwww b",
                     "wwww -www b", "wwww --ww b", "wwww ---w b", "wwww ---- b", "wwww 0--- b",
                     "wwww 00-- b", "wwww 000- b", "wwww 0000 b", "wwww 0000 n"}));
}

TEST_F(ArchiveCrash, LeavesTheArchiveOfLoadingAsItWasAndEveryFileWhole) {
  EXPECT_EQ(statesLeftBy(kLoad), (Strings{"aaaa wwww b", "aaaa awww b", "aaaa awaw b",
                                          "aaaa aaaw b", "aaaa aaaa b", "aaaa aaaa m"}));
}

TEST_F(ArchiveCrash, InTheMiddleOfACopyLeavesArchivingWhole) {
  const Kill kills[] = {
      {0, "---- wwww b", 0},       {1, "---- wwww b", 0},       {262'144, "---- wwww b", 0},
      {321'999, "---- wwww b", 0}, {322'000, "w--- wwww b", 1}, {449'999, "w--- wwww b", 1},
      {450'000, "ww-- wwww b", 2}, {524'288, "www- wwww b", 3}, {599'999, "www- wwww b", 3},
  };
  for (const Kill& kill : kills) {
    SCOPED_TRACE("killed beyond " + std::to_string(kill.limit));
    givenWorkingDataAndAnArchive();
    expectToBeKilledBeyond(kill.limit, test::FileCall::CopyFile, kArchive);
    expectLeftBehind(kill, may_, working_);

    // The partial archive is deleted as an earlier one, which fails because it is
    // incomplete.
    if (kill.state != "---- wwww b") {
      EXPECT_EQ(runAgain(kArchive), Strings{"Unable to archive sites. Unable to find file."});
    }
    EXPECT_EQ(runAgain(kArchive), Strings{});
    EXPECT_EQ(state(), "wwww 0000 n");
    EXPECT_EQ(strangeNames(), Strings{});
  }
}

TEST_F(ArchiveCrash, InTheMiddleOfACopyLeavesLoadingWhole) {
  const Kill kills[] = {
      {0, "aaaa wwww b", 0},       {1, "aaaa wwww b", 0},       {262'144, "aaaa wwww b", 0},
      {321'999, "aaaa wwww b", 0}, {322'000, "aaaa awww b", 2}, {449'999, "aaaa awww b", 2},
      {450'000, "aaaa awaw b", 1}, {524'288, "aaaa aaaw b", 3}, {599'999, "aaaa aaaw b", 3},
  };
  for (const Kill& kill : kills) {
    SCOPED_TRACE("killed beyond " + std::to_string(kill.limit));
    givenWorkingDataAndAnArchive();
    expectToBeKilledBeyond(kill.limit, test::FileCall::CopyFile, kLoad);
    expectLeftBehind(kill, data_, archived_);

    EXPECT_EQ(runAgain(kLoad), Strings{});
    EXPECT_EQ(state(), "aaaa aaaa m");
    EXPECT_EQ(strangeNames(), Strings{});
  }
}

TEST_F(ArchiveCrash, InTheMiddleOfTheLineLeavesTheOldOne) {
  for (const rlim_t limit : {0U, 2U, 5U}) {
    SCOPED_TRACE(limit);
    givenWorkingDataAndAnArchive();
    expectToBeKilledBeyond(limit, test::FileCall::ReplaceByLine, kArchive);
    EXPECT_EQ(state(), "wwww 0000 b");
    EXPECT_EQ(read(data_ / "load.txt.quorrix-new"), std::string("none\r\n").substr(0, limit));
    expectToStartOn("wwww 0000 b");
  }
  EXPECT_EQ(runAgain(kLoad), Strings{});
  EXPECT_EQ(state(), "wwww wwww m");
  EXPECT_EQ(strangeNames(), Strings{});
}

}  // namespace
}  // namespace quorrix
