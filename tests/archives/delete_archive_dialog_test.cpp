#include "archives/delete_archive_dialog.h"

#include "archives/archive_stage.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

using test::Texts;

constexpr const char* kDeleteMay = "Delete archive '/opt/quorrix/Archives/May'?";
constexpr const char* kDeleted =
    "Archive files in '/opt/quorrix/Archives/May' successfully deleted.";
constexpr const char* kNoneDeleted =
    "Error deleting archive '/opt/quorrix/Archives/May'. Unable to delete some archive files.";

class DeleteArchiveDialogTest : public test::ArchiveStage {
 protected:
  DeleteArchiveDialogTest() {
    disk_.givenAFile("/opt/quorrix/Archives/May/caf\xE9", "");
    dialog_.Form_Load();
    dialog_.show();
    openIn(dialog_, "May");
  }

  DeleteArchiveDialog::Work work() {
    return [this](const Path& folder, const std::vector<Path>& names) {
      steps_.push_back("delete in " + test::bytesWithSlashes(folder));
      for (const Path& name : names) steps_.push_back(test::bytesWithSlashes(name));
      if (whileDeleting_) whileDeleting_();
      return isAnyDeleted_;
    };
  }

  void expectQuestion(MessageBoxButton answer) {
    messageBox_.expect(kDeleteMay, MessageBoxStyle::ConfirmQuestion, answer);
  }

  Texts steps_;
  bool isAnyDeleted_ = true;
  std::function<void()> whileDeleting_;
  DeleteArchiveDialog dialog_{parts(), work()};
};

TEST_F(DeleteArchiveDialogTest, NamesTheFolderWholeWhateverItsCharacters) {
  disk_.givenAFolder(Path(u8"/opt/quorrix/Archives/Весна"));
  disk_.givenAFolder(Path(u8"/opt/quorrix/Archives/Осень"));
  openIn(dialog_, "Archives");
  openIn(dialog_, "Осень");
  messageBox_.expect("Delete archive '/opt/quorrix/Archives/Осень'?",
                     MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect("Archive files in '/opt/quorrix/Archives/Осень' successfully deleted.",
                     MessageBoxStyle::Information);
  press(dialog_, "OKButton");
}

TEST_F(DeleteArchiveDialogTest, DeletesAmongTheFilesThatItShows) {
  disk_.givenAFile("/opt/quorrix/Archives/May/info.dat", "");  // after the dialog listed them
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kDeleted, MessageBoxStyle::Information);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_,
            (Texts{"delete in /opt/quorrix/Archives/May", "caf\xE9", "nodes.dat", "notes.dat"}));
  EXPECT_FALSE(dialog_.isVisible());
}

TEST_F(DeleteArchiveDialogTest, TellsWhenThereWasNothingToDelete) {
  isAnyDeleted_ = false;
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kNoneDeleted, MessageBoxStyle::Exclamation);
  press(dialog_, "OKButton");
  EXPECT_FALSE(dialog_.isVisible());
}

TEST_F(DeleteArchiveDialogTest, StaysOpenWhenTheQuestionIsCancelled) {
  expectQuestion(MessageBoxButton::Cancel);
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, Texts{});
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(DeleteArchiveDialogTest, GivesWayToTheWork) {
  QCoreApplication::processEvents();
  const int paintsBefore = mainWindow_.paints;
  whileDeleting_ = [&] {
    EXPECT_FALSE(dialog_.isVisible());
    EXPECT_EQ(dialog_.cursor().shape(), Qt::WaitCursor);
    EXPECT_GT(mainWindow_.paints, paintsBefore);
  };
  expectQuestion(MessageBoxButton::Ok);
  messageBox_.expect(kDeleted, MessageBoxStyle::Information, MessageBoxButton::Ok,
                     [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); });
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.size(), 4U);
}

TEST_F(DeleteArchiveDialogTest, ClosesOnceAFailureWasTold) {
  const std::pair<int, const char*> kSentences[] = {
      {75, "Unable to delete archive. Path/file access error."},
      {76, "Unable to delete archive. Unknown error."}};
  for (const auto& [number, sentence] : kSentences) {
    dialog_.show();
    whileDeleting_ = [failing = number] { throw Failure(failing); };
    expectQuestion(MessageBoxButton::Ok);
    messageBox_.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                       [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); });
    press(dialog_, "OKButton");
    EXPECT_TRUE(messageBox_.isThrough()) << number;
    EXPECT_FALSE(dialog_.isVisible());
    EXPECT_EQ(dialog_.result(), QDialog::Rejected);
  }
}

}  // namespace
}  // namespace quorrix
