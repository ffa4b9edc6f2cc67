#include "shell/guarded.h"

#include <gtest/gtest.h>

#include <QWidget>
#include <new>
#include <stdexcept>

#include "platform/failure.h"
#include "support/scripted_message_box.h"

namespace quorrix {
namespace {

using test::ScriptedMessageBox;

class GuardedTest : public testing::Test {
 protected:
  // The form's caller has set the hourglass.
  GuardedTest() { form_.setCursor(Qt::WaitCursor); }

  Qt::CursorShape pointer() const { return form_.cursor().shape(); }

  template <typename Exception>
  bool guardTracking(const Exception& raised) {
    return guarded(form_, messageBox_, FailureFamily::Tracking, [&raised] { throw raised; });
  }

  QWidget form_;
  ScriptedMessageBox messageBox_;
};

using Guarded = GuardedTest;

TEST_F(Guarded, IsTrueAndSilentWhenNothingFails) {
  bool isDone = false;
  EXPECT_TRUE(guarded(form_, messageBox_, FailureFamily::Tracking, [&isDone] { isDone = true; }));
  EXPECT_TRUE(isDone);
  EXPECT_EQ(messageBox_.shown(), 0);
}

// An operation that succeeds resets the pointer itself; start-up does so only at its end.
TEST_F(Guarded, LeavesThePointerToAnOperationThatSucceeds) {
  EXPECT_TRUE(guarded(form_, messageBox_, FailureFamily::StartUp, [] {}));
  EXPECT_EQ(pointer(), Qt::WaitCursor);
}

TEST_F(Guarded, ShowsTheFamilysSentenceOnce) {
  messageBox_.expect("Disk full. Stopping tracking.", MessageBoxStyle::Critical);
  EXPECT_FALSE(guardTracking(Failure(61)));
  EXPECT_EQ(messageBox_.shown(), 1);
}

TEST_F(Guarded, AsksTheFamilyThatItWasGiven) {
  messageBox_.expect("Unable to save notes. Path not found.", MessageBoxStyle::Critical);
  EXPECT_FALSE(guarded(form_, messageBox_, FailureFamily::SaveNotes, [] { throw Failure(76); }));
}

TEST_F(Guarded, PutsThePointerBackBeforeItShowsTheMessage) {
  ASSERT_EQ(pointer(), Qt::WaitCursor);
  messageBox_.expect("Device I/O error. Stopping tracking.", MessageBoxStyle::Critical,
                     MessageBoxButton::Ok, [this] { EXPECT_EQ(pointer(), Qt::ArrowCursor); });
  EXPECT_FALSE(guardTracking(Failure(57)));
  EXPECT_EQ(pointer(), Qt::ArrowCursor);
}

TEST_F(Guarded, ClosesWhatTheOperationOpenedBeforeItShowsTheMessage) {
  struct OpenFile {
    explicit OpenFile(int& count) : count_(count) { ++count_; }
    ~OpenFile() { --count_; }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int& count_;
  };
  int openFiles = 0;
  messageBox_.expect("Device I/O error. Stopping tracking.", MessageBoxStyle::Critical,
                     MessageBoxButton::Ok, [&openFiles] { EXPECT_EQ(openFiles, 0); });
  EXPECT_FALSE(guarded(form_, messageBox_, FailureFamily::Tracking, [&openFiles] {
    const OpenFile file(openFiles);
    ASSERT_EQ(openFiles, 1);
    throw Failure(57);
  }));
}

TEST_F(Guarded, CallsExhaustedMemoryByItsName) {
  messageBox_.expect("Out of memory. Stopping tracking.", MessageBoxStyle::Critical);
  EXPECT_FALSE(guardTracking(std::bad_alloc()));
}

TEST_F(Guarded, TellsAnIndexOutOfRangeApart) {
  messageBox_.expect("Subscript out of range. Unable to process search.",
                     MessageBoxStyle::Critical);
  EXPECT_FALSE(guarded(form_, messageBox_, FailureFamily::ProcessSearch,
                       [] { throw std::out_of_range("a list"); }));
}

TEST_F(Guarded, TakesAnExceptionWithoutANumberForAnUnknownFailure) {
  messageBox_.expect("Error. Ending program.51", MessageBoxStyle::Critical);
  EXPECT_FALSE(guarded(form_, messageBox_, FailureFamily::StartUp,
                       [] { throw std::runtime_error("from a library"); }));
}

TEST_F(Guarded, TakesWhatIsNoExceptionAtAllForAnUnknownFailure) {
  messageBox_.expect("Error. Stopping tracking.", MessageBoxStyle::Critical);
  EXPECT_FALSE(guardTracking(42));
}

}  // namespace
}  // namespace quorrix
