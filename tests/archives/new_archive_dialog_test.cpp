#include "archives/new_archive_dialog.h"

#include <QTimer>

#include "archives/archive_dialog.h"
#include "archives/archive_stage.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

using test::FileCall;
using test::Texts;

class NewArchiveDialogTest : public test::ArchiveStage {
 protected:
  NewArchiveDialogTest() {
    archiveDialog_.Form_Load();
    archiveDialog_.show();
  }

  void open() {
    dialog_.Form_Load();
    dialog_.show();
  }

  void enter(const char* name) {
    control<QLineEdit>(dialog_, "Text1").setText(QString::fromUtf8(name));
  }

  // Enters a name and answers OK to the question.
  void makeFolder(const char* name, std::string_view question) {
    enter(name);
    messageBox_.expect(question, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
    press(dialog_, "OKButton");
  }

  void makeJuly() {
    makeFolder("July", "Create new archive folder 'July' in '/opt/quorrix/Archives'?");
  }

  // Presses New, and runs `inDialog` on the dialog that opens.
  void pressNew(const std::function<void(QWidget&)>& inDialog) {
    QTimer::singleShot(0, &archiveDialog_, [&] {
      QWidget* const opened = QApplication::activeModalWidget();
      ASSERT_NE(opened, nullptr);
      inDialog(*opened);
    });
    press(archiveDialog_, "NewButton");
  }

  ArchiveDialog archiveDialog_{parts(), {}};
  NewArchiveDialog dialog_{parts(), archiveDialog_};
};

TEST_F(NewArchiveDialogTest, IsNamedAndCaptioned) {
  EXPECT_EQ(dialog_.objectName(), QStringLiteral("NewArchiveDialog"));
  EXPECT_EQ(dialog_.windowTitle(), QStringLiteral("New Archive"));
  EXPECT_EQ(control<QAbstractButton>(dialog_, "OKButton").text(), QStringLiteral("OK"));
  EXPECT_EQ(control<QAbstractButton>(dialog_, "CancelButton").text(), QStringLiteral("Cancel"));
  EXPECT_EQ(dialog_.findChild<QWidget*>(QStringLiteral("File1")), nullptr);
}

TEST_F(NewArchiveDialogTest, MakesTheFolderInTheHighlightedOne) {
  open();
  clickOn(control<FolderList>(dialog_, "Dir1"), "May");
  makeFolder("July", "Create new archive folder 'July' in '/opt/quorrix/Archives/May'?");
  EXPECT_TRUE(disk_.folderExists("/opt/quorrix/Archives/May/July"));
}

TEST_F(NewArchiveDialogTest, MakesTheFolderInTheOpenOneIfNoneIsHighlighted) {
  open();
  control<FolderList>(dialog_, "Dir1").clearSelection();
  makeJuly();
  EXPECT_TRUE(disk_.folderExists("/opt/quorrix/Archives/July"));
}

TEST_F(NewArchiveDialogTest, MakesNoFolderIfTheHighlightedOneCannotBeOpened) {
  open();
  clickOn(control<FolderList>(dialog_, "Dir1"), "May");
  disk_.failListing("/opt/quorrix/Archives/May", 71);
  enter("July");
  messageBox_.expect("Disk not ready.", MessageBoxStyle::Critical);
  press(dialog_, "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_EQ(openFolderOf(dialog_), "/opt/quorrix/Archives");
  EXPECT_EQ(files_.callsOf(FileCall::MakeFolder), 0);
}

TEST_F(NewArchiveDialogTest, OpensWhereTheArchiveDialogIs) {
  chooseDrive(archiveDialog_, "/");
  openIn(archiveDialog_, "May");
  open();
  EXPECT_TRUE(archiveDialog_.newArchiveLoadedOK);
  EXPECT_EQ(openFolderOf(dialog_), "/opt/quorrix/Archives/May");
  EXPECT_EQ(driveShownIn(dialog_), "/");
  EXPECT_EQ(shownInBox(dialog_), "");
  const QPoint apart = dialog_.frameGeometry().center() - archiveDialog_.frameGeometry().center();
  EXPECT_LE(apart.manhattanLength(), 2);
}

TEST_F(NewArchiveDialogTest, TakesTheDriveAndKeepsTheFolderApartFromIt) {
  archiveDialog_.pointAt("/opt/quorrix", "/media/stick");
  open();
  EXPECT_EQ(driveShownIn(dialog_), "/media/stick");
  EXPECT_EQ(openFolderOf(dialog_), "/opt/quorrix");
}

TEST_F(NewArchiveDialogTest, AsksForAName) {
  open();
  messageBox_.expect("You must enter a folder name.", MessageBoxStyle::Exclamation);
  press(dialog_, "OKButton");
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(NewArchiveDialogTest, MakesTheFolderAndSendsTheArchiveDialogThere) {
  open();
  makeJuly();
  EXPECT_TRUE(disk_.folderExists("/opt/quorrix/Archives/July"));
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
  EXPECT_EQ(openFolderOf(archiveDialog_), "/opt/quorrix/Archives/July");
  EXPECT_EQ(shownInBox(archiveDialog_), "/opt/quorrix/Archives/July");
  EXPECT_EQ(filesOf(archiveDialog_), Texts{});
  EXPECT_EQ(driveShownIn(archiveDialog_), "/");
}

TEST_F(NewArchiveDialogTest, MakesTheFolderOnAnotherDrive) {
  open();
  control<QComboBox>(dialog_, "Drive1").setCurrentIndex(1);  // the dialog is not notified
  chooseDrive(dialog_, "/media/stick");
  EXPECT_EQ(openFolderOf(dialog_), "/media/stick");
  makeFolder("July", "Create new archive folder 'July' in '/media/stick'?");
  EXPECT_TRUE(disk_.folderExists("/media/stick/July"));
  EXPECT_EQ(driveShownIn(archiveDialog_), "/media/stick");
  EXPECT_EQ(openFolderOf(archiveDialog_), "/media/stick/July");
}

TEST_F(NewArchiveDialogTest, MakesTheFolderInTheRootWithOneSeparator) {
  archiveDialog_.pointAt("/", "/");
  open();
  makeFolder("July", "Create new archive folder 'July' in '/'?");
  EXPECT_EQ(shownInBox(archiveDialog_), "/July");
  EXPECT_EQ(openFolderOf(archiveDialog_), "/July");
}

TEST_F(NewArchiveDialogTest, StaysOpenWhenTheQuestionIsCancelled) {
  open();
  enter("July");
  messageBox_.expect("Create new archive folder 'July' in '/opt/quorrix/Archives'?",
                     MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel);
  press(dialog_, "OKButton");
  EXPECT_FALSE(disk_.folderExists("/opt/quorrix/Archives/July"));
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(NewArchiveDialogTest, ShowsTheHourglassWhileItMakesTheFolder) {
  open();
  bool isSeen = false;
  files_.onEveryCall([&] {
    if (files_.calls().back() != FileCall::MakeFolder) return;
    isSeen = dialog_.cursor().shape() == Qt::WaitCursor;
  });
  makeJuly();
  EXPECT_TRUE(isSeen);
}

TEST_F(NewArchiveDialogTest, LeavesTheNameToTheFileSystem) {
  open();
  makeFolder("  ", "Create new archive folder '  ' in '/opt/quorrix/Archives'?");
  EXPECT_TRUE(disk_.folderExists("/opt/quorrix/Archives/  "));
  dialog_.show();
  messageBox_.expect("Create new archive folder 'no/July' in '/opt/quorrix/Archives'?",
                     MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect("Unable to create new archive. Path not found.", MessageBoxStyle::Critical);
  enter("no/July");
  press(dialog_, "OKButton");
}

TEST_F(NewArchiveDialogTest, TakesANameBeyondAscii) {
  open();
  makeFolder("Caf\u00e9 \u0416 <b>&[*]",
             "Create new archive folder 'Caf\u00e9 \u0416 <b>&[*]' in '/opt/quorrix/Archives'?");
  EXPECT_EQ(openFolderOf(archiveDialog_), "/opt/quorrix/Archives/Caf\u00e9 \u0416 <b>&[*]");
  EXPECT_EQ(shownInBox(archiveDialog_), "/opt/quorrix/Archives/Caf\u00e9 \u0416 <b>&[*]");
}

TEST_F(NewArchiveDialogTest, RefusesANameThatIsThereAndMovesNothing) {
  open();
  enter("May");
  messageBox_.expect("Create new archive folder 'May' in '/opt/quorrix/Archives'?",
                     MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect("Unable to create new archive. Path/file access error.",
                     MessageBoxStyle::Critical, MessageBoxButton::Ok,
                     [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); });
  press(dialog_, "OKButton");
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_EQ(openFolderOf(archiveDialog_), "/opt/quorrix/Archives");
  EXPECT_EQ(shownInBox(archiveDialog_), "/opt/quorrix/Archives");
}

TEST_F(NewArchiveDialogTest, TellsWhyNoFolderWasMade) {
  const std::pair<int, const char*> kSentences[] = {
      {61, "Unable to create new archive. Disk full."},
      {28, "Unable to create new archive. Unknown error."},
      {7, "Unable to create new archive. Not enough memory available."}};
  open();
  for (const auto& [number, sentence] : kSentences) {
    files_.failAtCall(FileCall::MakeFolder, 1, number);
    enter("July");
    messageBox_.expect("Create new archive folder 'July' in '/opt/quorrix/Archives'?",
                       MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
    messageBox_.expect(sentence, MessageBoxStyle::Critical);
    press(dialog_, "OKButton");
    EXPECT_TRUE(messageBox_.isThrough()) << number;
    EXPECT_TRUE(dialog_.isVisible());
  }
}

TEST_F(NewArchiveDialogTest, KeepsItsFolderWhenTheDriveHasNoMedium) {
  open();
  messageBox_.expect("Device not ready.", MessageBoxStyle::Critical);
  chooseDrive(dialog_, "/media/empty");
  EXPECT_EQ(openFolderOf(dialog_), "/opt/quorrix/Archives");
  EXPECT_EQ(driveShownIn(dialog_), "/media/empty");
}

TEST_F(NewArchiveDialogTest, KeepsTheNameWhenAFolderIsOpened) {
  open();
  enter("July");
  openIn(dialog_, "May");
  EXPECT_EQ(shownInBox(dialog_), "July");
}

TEST_F(NewArchiveDialogTest, TellsWhyItDoesNotOpen) {
  constexpr const char* kMemory =
      "Unable to open New Archive window. Not enough memory available to start window.";
  const std::pair<int, const char*> kSentences[] = {
      {7, kMemory},
      {31001, kMemory},
      {68, "Device not ready."},
      {71, "Disk not ready."},
      {75, "Path/file access error."},
      {76, "Path not found."},
      {28, "Unable to open New Archive window. Unknown error."}};
  for (const auto& [number, sentence] : kSentences) {
    archiveDialog_.newArchiveLoadedOK = true;
    archiveDialog_.setCursor(Qt::WaitCursor);
    disk_.failListing("/opt/quorrix/Archives", number);
    messageBox_.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok, [this] {
      EXPECT_FALSE(archiveDialog_.newArchiveLoadedOK);
      EXPECT_EQ(archiveDialog_.cursor().shape(), Qt::ArrowCursor);
    });
    dialog_.Form_Load();
    EXPECT_TRUE(messageBox_.isThrough()) << number;
  }
}

TEST_F(NewArchiveDialogTest, DoesNotOpenOnADriveThatHasGone) {
  archiveDialog_.pointAt("/opt", "/media/stick");
  disk_.givenVolumes({"/"});
  messageBox_.expect("Device not ready.", MessageBoxStyle::Critical);
  dialog_.Form_Load();
  EXPECT_FALSE(archiveDialog_.newArchiveLoadedOK);
}

TEST_F(NewArchiveDialogTest, TellsOfTheFolderThatHasGoneWithItsDrive) {
  archiveDialog_.pointAt("/media/stick/Old", "/media/stick");
  disk_.givenVolumes({"/"});
  disk_.failListing("/media/stick/Old", 76);
  messageBox_.expect("Path not found.", MessageBoxStyle::Critical);
  dialog_.Form_Load();
  EXPECT_FALSE(archiveDialog_.newArchiveLoadedOK);
}

TEST_F(NewArchiveDialogTest, ClosesOnCancelAndMakesNothing) {
  open();
  enter("July");
  press(dialog_, "CancelButton");
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_FALSE(disk_.folderExists("/opt/quorrix/Archives/July"));
}

TEST_F(NewArchiveDialogTest, IsWalkedThroughFromTheName) {
  open();
  EXPECT_EQ(tabThrough(dialog_), (Texts{"Text1", "OKButton", "CancelButton", "Drive1", "Dir1"}));
  expectEveryControlIsNamed(dialog_);
}

TEST_F(NewArchiveDialogTest, IsOpenedByTheNewButton) {
  EXPECT_EQ(control<QAbstractButton>(archiveDialog_, "NewButton").text(), QStringLiteral("New"));
  bool isSeen = false;
  pressNew([&](QWidget& opened) {
    isSeen = true;
    EXPECT_EQ(opened.objectName(), QStringLiteral("NewArchiveDialog"));
    EXPECT_EQ(archiveDialog_.cursor().shape(), Qt::WaitCursor);
    control<QLineEdit>(opened, "Text1").setText(QStringLiteral("July"));
    messageBox_.expect("Create new archive folder 'July' in '/opt/quorrix/Archives'?",
                       MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
    press(opened, "OKButton");
  });
  EXPECT_TRUE(isSeen);
  EXPECT_TRUE(archiveDialog_.isVisible());
  EXPECT_EQ(archiveDialog_.cursor().shape(), Qt::ArrowCursor);
  EXPECT_EQ(shownInBox(archiveDialog_), "/opt/quorrix/Archives/July");
  EXPECT_EQ(archiveDialog_.focusWidget()->objectName(), QStringLiteral("OKButton"));
}

TEST_F(NewArchiveDialogTest, IsNotShownByTheNewButtonWhenItsLoadFails) {
  disk_.failListing("/opt/quorrix/Archives", 71);
  messageBox_.expect("Disk not ready.", MessageBoxStyle::Critical);
  press(archiveDialog_, "NewButton");  // returns because nothing modal is open
  EXPECT_EQ(archiveDialog_.cursor().shape(), Qt::ArrowCursor);
  EXPECT_TRUE(archiveDialog_.isVisible());
}

}  // namespace
}  // namespace quorrix
