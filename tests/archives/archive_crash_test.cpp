// What a program that dies in the middle of archiving or loading leaves on the disk.
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

using test::failureNumberOf;

constexpr int kRanThrough = 0;
constexpr int kDied = 40;

using Strings = std::vector<std::string>;
using Operation = std::function<void(FileSystem&)>;

class ArchiveCrash : public test::ArchivedFolders {
 protected:
  // The operation in a program that ends just before its n-th call to the file
  // system or to a file opened through it. Whether it got that far.
  bool diesAtCall(int n, const Operation& operation) {
    const int status = test::waitStatusOfAChild([&] {
      test::FaultyFileSystem dying(files_);
      int calls = 0;
      dying.onEveryCall([&] {
        if (++calls == n) ::_exit(kDied);
      });
      operation(dying);
      return kRanThrough;
    });
    EXPECT_TRUE(WIFEXITED(status)) << "call " << n;
    EXPECT_TRUE(WEXITSTATUS(status) == kDied || WEXITSTATUS(status) == kRanThrough)
        << "call " << n << ": " << WEXITSTATUS(status);
    return WIFEXITED(status) && WEXITSTATUS(status) == kDied;
  }

  // Dies before call 1, 2, 3 and so on, each time anew; at last not any more. The
  // states that are found, in order, each named once. After each the program starts.
  Strings statesLeftBy(const Operation& operation) {
    constexpr int kFarTooMany = 200;
    Strings states;
    bool died = true;
    for (int n = 1; died && n < kFarTooMany; ++n) {
      SCOPED_TRACE("call " + std::to_string(n));
      givenWorkingDataAndAnArchive();
      died = diesAtCall(n, operation);
      const std::string found = state();
      if (states.empty() || states.back() != found) states.push_back(found);
      EXPECT_EQ(strangeNames(), Strings{});
      expectToStartOn(found);
    }
    EXPECT_FALSE(died);
    return states;
  }

  // The operation in a program that the system kills when a file of it would grow
  // beyond `bytes`: what fits is written, and the next write is the last.
  static void expectToBeKilledBeyond(rlim_t bytes, const std::function<void()>& operation) {
    const int status = test::waitStatusOfAChild([&] {
      std::signal(SIGXFSZ, SIG_DFL);
      const rlimit noCore{0, 0};
      const rlimit limit{bytes, bytes};
      ::setrlimit(RLIMIT_CORE, &noCore);
      ::setrlimit(RLIMIT_FSIZE, &limit);
      operation();
      return kRanThrough;
    });
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
  }

  struct Kill {
    rlim_t limit;
    std::string state;
    std::size_t file;  // that was being written, by its place in kNames
  };

  // The dead program has left the beginning of a file, under a name of its own.
  void expectLeftBehind(const Kill& kill, const Path& folder, const Strings& contents) {
    EXPECT_EQ(state(), kill.state);
    const std::string name = std::string(kNames[kill.file]) + ".quorrix-new";
    EXPECT_EQ(strangeNames(), Strings{name});
    EXPECT_TRUE(read(folder / name) == contents[kill.file].substr(0, kill.limit));
    expectToStartOn(kill.state);
  }
};

TEST_F(ArchiveCrash, LeavesEveryFileOfArchivingWhole) {
  const auto archiving = [&](FileSystem& files) { archive(files, EarlierArchive::Delete); };
  EXPECT_EQ(statesLeftBy(archiving),
            (Strings{"aaaa wwww b", "-aaa wwww b", "--aa wwww b", "---a wwww b", "---- wwww b",
                     "w--- wwww b", "ww-- wwww b", "www- wwww b", "wwww wwww b", "wwww -www b",
                     "wwww --ww b", "wwww ---w b", "wwww ---- b", "wwww 0--- b", "wwww 00-- b",
                     "wwww 000- b", "wwww 0000 b", "wwww 0000 n"}));
}

TEST_F(ArchiveCrash, LeavesEveryFileOfArchivingOverFilesThatAreThereWhole) {
  const auto archiving = [&](FileSystem& files) { archive(files, EarlierArchive::None); };
  EXPECT_EQ(statesLeftBy(archiving),
            (Strings{"aaaa wwww b", "waaa wwww b", "wwaa wwww b", "wwwa wwww b", "wwww wwww b",
                     "wwww -www b", "wwww --ww b", "wwww ---w b", "wwww ---- b", "wwww 0--- b",
                     "wwww 00-- b", "wwww 000- b", "wwww 0000 b", "wwww 0000 n"}));
}

TEST_F(ArchiveCrash, LeavesTheArchiveOfLoadingAsItWasAndEveryFileWhole) {
  EXPECT_EQ(statesLeftBy([&](FileSystem& files) { load(files); }),
            (Strings{"aaaa wwww b", "aaaa awww b", "aaaa awaw b", "aaaa aaaw b", "aaaa aaaa b",
                     "aaaa aaaa m"}));
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
    expectToBeKilledBeyond(kill.limit, [&] { archive(files_, EarlierArchive::Delete); });
    expectLeftBehind(kill, may_, working_);

    EXPECT_EQ(failureNumberOf([&] { archive(files_, EarlierArchive::None); }), test::kNoFailure);
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
    expectToBeKilledBeyond(kill.limit, [&] { load(files_); });
    expectLeftBehind(kill, data_, archived_);

    EXPECT_EQ(failureNumberOf([&] { load(files_); }), test::kNoFailure);
    EXPECT_EQ(state(), "aaaa aaaa m");
    EXPECT_EQ(strangeNames(), Strings{});
  }
}

TEST_F(ArchiveCrash, InTheMiddleOfTheLineLeavesTheOldOne) {
  givenWorkingDataAndAnArchive();
  for (const rlim_t limit : {0U, 2U, 5U}) {
    SCOPED_TRACE(limit);
    expectToBeKilledBeyond(limit, [&] { rememberNoArchive(files_, app_); });
    EXPECT_EQ(state(), "aaaa wwww b");
    EXPECT_EQ(read(data_ / "load.txt.quorrix-new"), std::string("none\r\n").substr(0, limit));
    expectToStartOn("aaaa wwww b");
  }
  rememberArchive(files_, app_, may_);
  EXPECT_EQ(state(), "aaaa wwww m");
  EXPECT_EQ(strangeNames(), Strings{});
}

}  // namespace
}  // namespace quorrix
