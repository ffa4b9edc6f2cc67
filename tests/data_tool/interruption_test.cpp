// Ctrl-C and the like while a file or a copy is written. Only on Linux, where the test can raise
// signals and survive them.
#ifndef _WIN32

#include <csignal>
#include <filesystem>

#include "data_tool/file_output.h"
#include "data_tool/folder_copy_stage.h"
#include "data_tool/record_reader.h"
#include "platform/deferred_signals.h"

namespace quorrix {
namespace {

volatile std::sig_atomic_t received = 0;

class InterruptionTest : public test::FolderCopyStage {
 protected:
  InterruptionTest() {
    received = 0;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
      std::signal(signal, [](int number) { received = number; });
    }
  }

  ~InterruptionTest() override {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
  }

  void raiseAtWrite(int number, int signal) {
    onEveryWrite([this, number, signal] {
      if (files_.callsOf(test::FileCall::WriteAt) == number) std::raise(signal);
    });
  }
};

TEST_F(InterruptionTest, EndsACopyAndLeavesNothing) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    files_.reset();
    raiseAtWrite(2, signal);
    EXPECT_THROW(copy(folder_ / "Copy"), EndRequested);
    EXPECT_EQ(received, signal);
    EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 2);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy"));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy.quorrix-new"));
  }
}

TEST_F(InterruptionTest, EndsAnExportAndKeepsTheOldFile) {
  folder_.givenAFile("sites.json", "old");
  raiseAtWrite(1, SIGTERM);
  const std::string text(100'000, 'x');
  EXPECT_THROW(writeFile(files_, folder_ / "sites.json",
                         [&](Output& output, const DeferredSignals&) {
                           for (int i = 0; i < 10; ++i) output.write(text);
                         }),
               EndRequested);
  EXPECT_EQ(received, SIGTERM);
  EXPECT_EQ(folder_.bytesOf("sites.json"), "old");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "sites.json.quorrix-new"));
}

TEST_F(InterruptionTest, IsNoticedDuringTheLastSync) {
  files_.onEveryCall([this] {
    if (files_.calls().back() == test::FileCall::Sync) std::raise(SIGINT);
  });
  EXPECT_THROW(copy(folder_ / "Copy"), EndRequested);
  EXPECT_EQ(files_.callsOf(test::FileCall::Sync), 1);
  folder_.givenAFile("sites.json", "old");
  const auto write = [](Output& output, const DeferredSignals&) { output.write("new"); };
  EXPECT_THROW(writeFile(files_, folder_ / "sites.json", write), EndRequested);
  EXPECT_EQ(folder_.bytesOf("sites.json"), "old");
  files_.reset();
  files_.onEveryCall([this] {
    const bool isLast = files_.callsOf(test::FileCall::Sync) == 9;
    if (isLast && files_.calls().back() == test::FileCall::Sync) std::raise(SIGINT);
  });
  received = 0;
  EXPECT_THROW(copy(folder_ / "Copy"), EndRequested);
  EXPECT_EQ(received, SIGINT);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy.quorrix-new"));
}

TEST_F(InterruptionTest, EndsTheWaitForALockedFile) {
  timing_.patience = std::chrono::hours(1);
  const auto writer = real_.openRandomAccess(folder_ / "Data" / "nodes.dat");
  const auto raiseAtOpen = [this](int number) {
    files_.onEveryCall([this, number] {
      const bool isOpening = files_.calls().back() == test::FileCall::OpenForReading;
      if (isOpening && files_.callsOf(test::FileCall::OpenForReading) == number) std::raise(SIGINT);
    });
  };
  raiseAtOpen(7);  // two attempts after the four other files
  EXPECT_THROW(copy(folder_ / "Copy"), EndRequested);
  EXPECT_EQ(received, SIGINT);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy.quorrix-new"));
  files_.reset();
  raiseAtOpen(3);
  const auto write = [this](Output&, const DeferredSignals& signals) {
    static_cast<void>(
        openPatiently(files_, folder_ / "Data" / "nodes.dat", LockTurns(timing_, &signals)));
  };
  EXPECT_THROW(writeFile(files_, folder_ / "sites.json", write), EndRequested);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "sites.json"));
}

TEST_F(InterruptionTest, IsForgottenIfTheSignalIsIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  raiseAtWrite(2, SIGHUP);
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(filesIn("Copy"), kAll);
}

// The last moment at which a signal is noticed is over. The process ends with the copy complete.
TEST_F(InterruptionTest, IsNotLostAtTheEnd) {
  files_.onEveryCall([this] {
    if (files_.calls().back() == test::FileCall::Rename) std::raise(SIGINT);
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(received, SIGINT);
  EXPECT_EQ(filesIn("Copy"), kAll);
}

}  // namespace
}  // namespace quorrix

#endif
