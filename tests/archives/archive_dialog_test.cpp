#include "archives/archive_dialog.h"

#include <QTimer>

#include "archives/archive_stage.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

using test::Texts;

constexpr const char* kArchiveMay =
    "Archive current display and associated data to '/opt/quorrix/Archives/May'?";
constexpr const char* kAnyway =
    "The selected folder contains Quorrix archive files. They will be overwritten if you "
    "continue. Archive anyway?";
constexpr int kNeverEnded = 99;
constexpr const char* kDone = "Data successfully archived to '/opt/quorrix/Archives/May'.";

class ArchiveDialogTest : public test::ArchiveStage {
 protected:
  ArchiveDialogTest() {
    dialog_.Form_Load();
    dialog_.show();
    openIn(dialog_, "May");
  }

  ArchiveDialog::Work work() {
    return {.holdsArchiveFiles =
                [this](const Path& folder) {
                  steps_.push_back("look into " + test::bytesWithSlashes(folder));
                  if (lookFailure_ != 0) throw Failure(lookFailure_);
                  return holdsArchiveFiles_;
                },
            .archive =
                [this](const Path& folder, EarlierArchive earlier) {
                  steps_.push_back("archive to " + test::bytesWithSlashes(folder) +
                                   (earlier == EarlierArchive::None ? "" : " over another"));
                  if (whileArchiving_) whileArchiving_();
                }};
  }

  void expectQuestion(MessageBoxButton answer) {
    messageBox_.expect(kArchiveMay, MessageBoxStyle::ConfirmQuestion, answer);
  }

  Texts steps_;
  bool holdsArchiveFiles_ = false;
  int lookFailure_ = 0;
  std::function<void()> whileArchiving_;
  ArchiveDialog dialog_{parts(), work()};
};

TEST_F(ArchiveDialogTest, ArchivesToTheFolderThatIsOpen) {
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kDone, MessageBoxStyle::Information);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_,
            (Texts{"look into /opt/quorrix/Archives/May", "archive to /opt/quorrix/Archives/May"}));
  EXPECT_FALSE(dialog_.isVisible());
}

TEST_F(ArchiveDialogTest, ShowsThePathAgainWhenAFolderIsClicked) {
  control<QLineEdit>(dialog_, "Text1").setText(QStringLiteral("elsewhere"));
  clickOn(control<FolderList>(dialog_, "Dir1"), "opt");
  EXPECT_EQ(shownInBox(dialog_), "/opt/quorrix/Archives/May");
}

TEST_F(ArchiveDialogTest, StaysOpenWhenTheQuestionIsCancelled) {
  expectQuestion(MessageBoxButton::Cancel);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, Texts{});
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(ArchiveDialogTest, AsksBeforeItOverwritesAnArchive) {
  holdsArchiveFiles_ = true;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kAnyway, MessageBoxStyle::ConfirmWarning, MessageBoxButton::Ok);
  messageBox_.expect(kDone, MessageBoxStyle::Information);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.back(), "archive to /opt/quorrix/Archives/May over another");
}

TEST_F(ArchiveDialogTest, StaysOpenWhenNothingIsToBeOverwritten) {
  holdsArchiveFiles_ = true;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kAnyway, MessageBoxStyle::ConfirmWarning, MessageBoxButton::Cancel);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, Texts{"look into /opt/quorrix/Archives/May"});
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ArchiveDialogTest, GivesWayToTheWork) {
  QCoreApplication::processEvents();
  const int paintsBefore = mainWindow_.paints;
  whileArchiving_ = [&] {
    EXPECT_FALSE(dialog_.isVisible());
    EXPECT_EQ(dialog_.cursor().shape(), Qt::WaitCursor);
    EXPECT_GT(mainWindow_.paints, paintsBefore);
  };
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kDone, MessageBoxStyle::Information, MessageBoxButton::Ok, [this] {
    EXPECT_FALSE(dialog_.isVisible());
    EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
  });
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.size(), 2U);
}

TEST_F(ArchiveDialogTest, EndsTheModalShowWhenItIsThrough) {
  dialog_.hide();
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kDone, MessageBoxStyle::Information);
  QTimer::singleShot(0, &dialog_, [this] {
    press(dialog_, "OKButton");
    // Runs only if the modal show goes on.
    QTimer::singleShot(0, &dialog_, [this] { dialog_.done(kNeverEnded); });
  });
  EXPECT_EQ(dialog_.exec(), QDialog::Accepted);
  EXPECT_TRUE(messageBox_.isThrough());
}

TEST_F(ArchiveDialogTest, ClosesOnceAFailureWasTold) {
  const std::pair<int, const char*> kSentences[] = {
      {53, "Unable to archive sites. Unable to find file."},
      {61, "Unable to archive sites. Disk full."},
      {31001, "Unable to archive sites. Out of memory."},
      {5, "Unable to archive sites. Unknown error."}};
  for (const auto& [number, sentence] : kSentences) {
    dialog_.show();
    whileArchiving_ = [failing = number] { throw Failure(failing); };
    expectQuestion(MessageBoxButton::Ok);
    messageBox_.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                       [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); });
    press(dialog_, "OKButton");
    EXPECT_TRUE(messageBox_.isThrough()) << number;
    EXPECT_FALSE(dialog_.isVisible());
    EXPECT_EQ(dialog_.result(), QDialog::Rejected);
  }
}

TEST_F(ArchiveDialogTest, ClosesWhenTheFolderCannotBeLookedInto) {
  lookFailure_ = 75;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect("Unable to archive sites. Path/file access error.", MessageBoxStyle::Critical,
                     MessageBoxButton::Ok, [this] { EXPECT_TRUE(dialog_.isVisible()); });
  press(dialog_, "OKButton");
  EXPECT_FALSE(dialog_.isVisible());
}

TEST_F(ArchiveDialogTest, NamesFoldersAsTheyAreInMessages) {
  disk_.givenAFolder("/opt/quorrix/Archives/May/<b>&A [*]");
  disk_.givenAFolder("/opt/quorrix/Archives/May/caf\xE9");
  openIn(dialog_, "Archives");
  openIn(dialog_, "May");
  openIn(dialog_, "<b>&A [*]");
  messageBox_.expect(
      "Archive current display and associated data to '/opt/quorrix/Archives/May/<b>&A [*]'?",
      MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel);
  press(dialog_, "OKButton");
  openIn(dialog_, "May");
  openIn(dialog_, "caf\u00e9");
  messageBox_.expect(
      "Archive current display and associated data to '/opt/quorrix/Archives/May/caf\u00e9'?",
      MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect("Data successfully archived to '/opt/quorrix/Archives/May/caf\u00e9'.",
                     MessageBoxStyle::Information);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.back(), "archive to /opt/quorrix/Archives/May/caf\xE9");
}

}  // namespace
}  // namespace quorrix
