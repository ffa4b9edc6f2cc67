#include "archives/load_archive_dialog.h"

#include "archives/archive_stage.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

using test::Texts;

constexpr const char* kLoadMay = "Load archive data from '/opt/quorrix/Archives/May'?";
constexpr const char* kNoArchive =
    "Folder does not contain a critical archive file. The folder must contain at least "
    "'nodes.dat'. Canceling operation.";
constexpr const char* kAnyway =
    "The current display, and associated data, will be discarded before loading archive. Archive "
    "the current display first if you wish to retain the information. Load archive anyway?";

class LoadArchiveDialogTest : public test::ArchiveStage {
 protected:
  LoadArchiveDialogTest() {
    dialog_.Form_Load();
    dialog_.show();
    openIn(dialog_, "May");
  }

  LoadArchiveDialog::Work work() {
    return {.holdsArchive =
                [this](const Path& folder) {
                  steps_.push_back("look into " + test::bytesWithSlashes(folder));
                  if (lookFailure_ != 0) throw Failure(lookFailure_);
                  return holdsArchive_;
                },
            .displayHoldsSites =
                [this] {
                  steps_.push_back("look at display");
                  return displayHoldsSites_;
                },
            .load =
                [this](const Path& folder) {
                  steps_.push_back("load " + test::bytesWithSlashes(folder));
                  if (whileLoading_) whileLoading_();
                }};
  }

  void expectQuestion(MessageBoxButton answer) {
    messageBox_.expect(kLoadMay, MessageBoxStyle::ConfirmQuestion, answer);
  }

  Texts steps_;
  bool holdsArchive_ = true;
  bool displayHoldsSites_ = false;
  int lookFailure_ = 0;
  std::function<void()> whileLoading_;
  LoadArchiveDialog dialog_{parts(), work()};
};

TEST_F(LoadArchiveDialogTest, LoadsIntoAnEmptyDisplayWithoutAWarning) {
  expectQuestion(MessageBoxButton::Ok);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, (Texts{"look into /opt/quorrix/Archives/May", "look at display",
                           "load /opt/quorrix/Archives/May"}));
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_EQ(dialog_.result(), QDialog::Accepted);
}

TEST_F(LoadArchiveDialogTest, StaysOpenWhenTheQuestionIsCancelled) {
  expectQuestion(MessageBoxButton::Cancel);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, Texts{});
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(LoadArchiveDialogTest, RefusesAFolderWithoutAnArchiveAndStaysOpen) {
  holdsArchive_ = false;
  displayHoldsSites_ = true;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kNoArchive, MessageBoxStyle::Exclamation);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, Texts{"look into /opt/quorrix/Archives/May"});
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(LoadArchiveDialogTest, WarnsBeforeItDiscardsTheDisplay) {
  displayHoldsSites_ = true;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kAnyway, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.back(), "load /opt/quorrix/Archives/May");
  EXPECT_FALSE(dialog_.isVisible());
}

TEST_F(LoadArchiveDialogTest, ClosesWhenTheDisplayIsToStay) {
  displayHoldsSites_ = true;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kAnyway, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.back(), "look at display");
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_EQ(dialog_.result(), QDialog::Rejected);
}

TEST_F(LoadArchiveDialogTest, GivesWayToTheWork) {
  QCoreApplication::processEvents();
  const int paintsBefore = mainWindow_.paints;
  whileLoading_ = [&] {
    EXPECT_FALSE(dialog_.isVisible());
    EXPECT_EQ(dialog_.cursor().shape(), Qt::WaitCursor);
    EXPECT_GT(mainWindow_.paints, paintsBefore);
  };
  expectQuestion(MessageBoxButton::Ok);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.size(), 3U);
  EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(LoadArchiveDialogTest, ClosesOnceAFailureWasTold) {
  whileLoading_ = [] { throw Failure(53); };
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect("Unable to load archive. Unable to find file.", MessageBoxStyle::Critical,
                     MessageBoxButton::Ok,
                     [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); });
  press(dialog_, "OKButton");
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_EQ(dialog_.result(), QDialog::Rejected);
}

TEST_F(LoadArchiveDialogTest, ClosesWhenTheFolderCannotBeLookedInto) {
  lookFailure_ = 71;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect("Unable to load archive. Disk not ready.", MessageBoxStyle::Critical);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, Texts{"look into /opt/quorrix/Archives/May"});
  EXPECT_FALSE(dialog_.isVisible());
}

TEST_F(LoadArchiveDialogTest, LoadsAFolderWhoseNameIsNoUtf8) {
  disk_.givenAFolder("/opt/quorrix/Archives/May/caf\xE9");
  openIn(dialog_, "Archives");
  openIn(dialog_, "May");
  openIn(dialog_, "caf\u00e9");
  EXPECT_EQ(shownInBox(dialog_), "/opt/quorrix/Archives/May/caf\u00e9");
  messageBox_.expect("Load archive data from '/opt/quorrix/Archives/May/caf\u00e9'?",
                     MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.back(), "load /opt/quorrix/Archives/May/caf\xE9");
}

}  // namespace
}  // namespace quorrix
