// The archive commands, from the menu to the files.
#include <QLineEdit>
#include <QTimer>
#include <new>

#include "main_window/main_form.h"
#include "main_window/main_form_stage.h"
#include "records/record_file_stage.h"

namespace quorrix {
namespace {

using test::MainFormStage;
using test::siteRecord;

constexpr const char* kArchiveToMay =
    "Archive current display and associated data to '/Quorrix/Archives/May'?";

constexpr const char* kLoadMay = "Load archive data from '/Quorrix/Archives/May'?";

constexpr const char* kArchiveAnyway =
    "The selected folder contains Quorrix archive files. They will be overwritten if you "
    "continue. Archive anyway?";

constexpr const char* kDiscard =
    "The current display, and associated data, will be discarded before loading archive. Archive "
    "the current display first if you wish to retain the information. Load archive anyway?";

class MainFormArchivesTest : public testing::Test {
 protected:
  MainFormArchivesTest() {
    stage_.memory.givenAFolder("/Quorrix/Archives/May");
    stage_.givenAnInstalledProgram(nodes_, "/Quorrix/Archives/April\r\n");
    EXPECT_TRUE(stage_.form.Form_Load());
    stage_.files.reset();
    // Like a click, this puts the site into the caption.
    stage_.form.tree().select(stage_.node("four.five.six"));
    stage_.form.TreeView_MouseUp(mouse_button::kLeft, 0, 0, 0);
    stage_.memory.givenAFile("/Quorrix/Data/notes.dat", notes_);
  }

  const std::string& file(const char* path) { return stage_.memory.bytesOf(path); }

  // Chooses a command of the menu; in the dialog that opens, chooses the folder and
  // presses OK.
  void archiveCommand(const char* command, const Path& folder = "/Quorrix/Archives/May") {
    QTimer::singleShot(0, &stage_.form, [this, folder] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(stage_.pointer(), Qt::WaitCursor);
      auto* const folders = dialog->findChild<FolderList*>(QStringLiteral("Dir1"));
      folders->setPath(folder);
      dialog->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
      if (dialog->isVisible()) dialog->reject();
    });
    stage_.choose(command);
    EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
  }

  // Tracks for one pass, in which the browser is contacting the address.
  void track(const std::string& address) {
    stage_.windows.show(
        {test::browserWindow("A page - Netscape", "http://" + address, "Connect: contacting")});
    stage_.events.atPump(stage_.events.pumps() + 1, [this] { stage_.choose("FileStopTrack"); });
    stage_.track();
    stage_.windows.show({});
    EXPECT_NE(stage_.form.tree().find(address), kNoNode);
  }

  void expectQuestion(const char* question) {
    stage_.messageBox.expect(question, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  }

  // The warning that the folder already holds an archive.
  void expectWarning(MessageBoxButton answer) {
    stage_.messageBox.expect(kArchiveAnyway, MessageBoxStyle::ConfirmWarning, answer);
  }

  void givenTheArchive(const std::string& nodes) {
    const Path folder = "/Quorrix/Archives/May";
    stage_.memory.givenAFile(folder / "nodes.dat", nodes);
    stage_.memory.givenAFile(folder / "notes.dat", "");
    stage_.memory.givenAFile(folder / "info.dat", "");
    stage_.memory.givenAFile(folder / "purchases.dat", "");
  }

  const std::string nodes_ = siteRecord("one.two.three/a", 'N') + siteRecord("four.five.six", 'S');
  const std::string notes_ = test::notesRecord("four.five.six", "roses");
  MainFormStage stage_;
};

using MainFormArchive = MainFormArchivesTest;
using MainFormLoadArchive = MainFormArchivesTest;
using MainFormDeleteArchive = MainFormArchivesTest;

TEST_F(MainFormArchive, MovesTheDisplayAndItsDataIntoTheFolder) {
  expectQuestion(kArchiveToMay);
  stage_.messageBox.expect("Data successfully archived to '/Quorrix/Archives/May'.",
                           MessageBoxStyle::Information);
  archiveCommand("FileArchive");
  EXPECT_EQ(file("/Quorrix/Archives/May/nodes.dat"), nodes_);
  EXPECT_EQ(file("/Quorrix/Archives/May/notes.dat"), notes_);
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), "");
  EXPECT_EQ(file("/Quorrix/Data/notes.dat"), "");
  EXPECT_EQ(file("/Quorrix/Data/load.txt"), "none\r\n");
  EXPECT_EQ(stage_.form.tree().size(), 1U);
  EXPECT_EQ(stage_.panelText(1), "Last archive loaded: none");
  EXPECT_EQ(stage_.caption(), "Quorrix");
}

TEST_F(MainFormArchive, LacksTheRecordOfTheLastArchiveOnlyWhenAllElseIsDone) {
  stage_.memory.deleteFile("/Quorrix/Data/load.txt");
  expectQuestion(kArchiveToMay);
  stage_.messageBox.expect("Unable to archive sites. Unable to find file.",
                           MessageBoxStyle::Critical);
  archiveCommand("FileArchive");
  EXPECT_EQ(file("/Quorrix/Archives/May/nodes.dat"), nodes_);
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), "");
  EXPECT_EQ(stage_.form.tree().size(), 1U);
  EXPECT_EQ(stage_.panelText(1), "Last archive loaded: none");
}

TEST_F(MainFormArchive, StopsWhereAnEarlierArchiveIsNotWhole) {
  stage_.memory.givenAFile("/Quorrix/Archives/May/nodes.dat", "old");
  expectQuestion(kArchiveToMay);
  expectWarning(MessageBoxButton::Ok);
  stage_.messageBox.expect("Unable to archive sites. Unable to find file.",
                           MessageBoxStyle::Critical);
  archiveCommand("FileArchive");
  EXPECT_FALSE(stage_.memory.holdsFile("/Quorrix/Archives/May/nodes.dat"));
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), nodes_);
  EXPECT_EQ(stage_.form.tree().size(), 4U);
}

TEST_F(MainFormArchive, EmptiesTheWorkingFolderWhenThatIsWhereItArchivesTo) {
  expectQuestion("Archive current display and associated data to '/Quorrix/Data'?");
  expectWarning(MessageBoxButton::Ok);
  stage_.messageBox.expect("Data successfully archived to '/Quorrix/Data'.",
                           MessageBoxStyle::Information);
  archiveCommand("FileArchive", "/Quorrix/Data");
  for (const auto* const name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
    EXPECT_EQ(stage_.memory.bytesOf(Path("/Quorrix/Data") / name), "") << name;
  }
  EXPECT_EQ(file("/Quorrix/Data/load.txt"), "none\r\n");
  EXPECT_EQ(stage_.form.tree().size(), 1U);
}

TEST_F(MainFormArchive, WarnsOfAFolderWithNothingButTitles) {
  stage_.memory.givenAFile("/Quorrix/Archives/May/titles.txt", "");
  expectQuestion(kArchiveToMay);
  expectWarning(MessageBoxButton::Cancel);
  archiveCommand("FileArchive");
  EXPECT_FALSE(stage_.memory.holdsFile("/Quorrix/Archives/May/nodes.dat"));
}

TEST_F(MainFormArchive, WarnsOfPurchasesThatLieBesideTheFolder) {
  stage_.memory.givenAFile("/Quorrix/Archives/Maypurchases.dat", "");
  expectQuestion(kArchiveToMay);
  expectWarning(MessageBoxButton::Cancel);
  archiveCommand("FileArchive");
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), nodes_);
}

TEST_F(MainFormArchive, IsRefusedWhereTheSiteFileHoldsNoSite) {
  stage_.memory.givenAFile("/Quorrix/Data/nodes.dat", std::string(644, ' '));
  stage_.messageBox.expect("No site information to archive.", MessageBoxStyle::Information);
  stage_.choose("FileArchive");
}

TEST_F(MainFormArchive, HasSentencesOfItsOwnForNotOpening) {
  for (const auto& [number, sentence] :
       {std::pair{53, "Unable to find file. Unable to open Archive Sites window."},
        std::pair{57, "Device I/O error. Unable to open Archive Sites window."},
        std::pair{67, "Too many files open. Unable to open Archive Sites window."},
        std::pair{7, "Not enough memory available to open Archive Sites window."},
        std::pair{61, "Unknown error. Unable to open Archive Sites window."}}) {
    stage_.files.reset();
    stage_.files.failAtCall(1, number);
    stage_.messageBox.expect(sentence, MessageBoxStyle::Critical);
    stage_.choose("FileArchive");
  }
}

TEST_F(MainFormLoadArchive, ReplacesTheDisplayAndItsData) {
  const std::string archived = siteRecord("seven.eight.nine/x", 'N');
  givenTheArchive(archived);
  expectQuestion(kLoadMay);
  expectQuestion(kDiscard);
  archiveCommand("FileLoadArchive");
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), archived);
  EXPECT_EQ(file("/Quorrix/Data/notes.dat"), "");
  EXPECT_EQ(file("/Quorrix/Data/load.txt"), "/Quorrix/Archives/May\r\n");
  EXPECT_EQ(file("/Quorrix/Archives/May/nodes.dat"), archived);
  EXPECT_EQ(stage_.form.tree().size(), 3U);
  EXPECT_EQ(stage_.form.tree().selected(), stage_.form.tree().root());
  EXPECT_TRUE(stage_.isOnScreen("seven.eight.nine"));
  EXPECT_EQ(stage_.panelText(1), "Last archive loaded: /Quorrix/Archives/May");
  EXPECT_EQ(stage_.caption(), "Quorrix");
  EXPECT_EQ(stage_.form.workingPaths().currentNodesFile, Path("/Quorrix/Data/nodes.dat"));
}

TEST_F(MainFormLoadArchive, StaysInTheArchiveWhenAFileIsMissingThere) {
  stage_.memory.givenAFile("/Quorrix/Archives/May/nodes.dat", siteRecord("seven.eight.nine", 'N'));
  stage_.memory.givenAFile("/Quorrix/Archives/May/purchases.dat", "p");
  stage_.form.tree().clear();
  expectQuestion(kLoadMay);
  stage_.messageBox.expect("Unable to load archive. Unable to find file.",
                           MessageBoxStyle::Critical);
  archiveCommand("FileLoadArchive");
  EXPECT_EQ(stage_.form.tree().size(), 2U);
  EXPECT_NE(stage_.form.tree().find("seven.eight.nine"), kNoNode);
  EXPECT_TRUE(stage_.isOnScreen("seven.eight.nine"));
  EXPECT_EQ(file("/Quorrix/Data/load.txt"), "/Quorrix/Archives/April\r\n");
  EXPECT_EQ(stage_.panelText(1), "Last archive loaded: /Quorrix/Archives/April");
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), siteRecord("seven.eight.nine", 'N'));
  EXPECT_EQ(file("/Quorrix/Data/purchases.dat"), "p");
  EXPECT_EQ(file("/Quorrix/Data/notes.dat"), notes_);
  EXPECT_EQ(stage_.form.workingPaths().currentNodesFile, Path("/Quorrix/Archives/May/nodes.dat"));
}

TEST_F(MainFormLoadArchive, LacksTheRecordOfTheLastArchiveOnlyWhenAllElseIsDone) {
  const std::string archived = siteRecord("seven.eight.nine/x", 'N');
  givenTheArchive(archived);
  stage_.memory.deleteFile("/Quorrix/Data/load.txt");
  expectQuestion(kLoadMay);
  expectQuestion(kDiscard);
  stage_.messageBox.expect("Unable to load archive. Unable to find file.",
                           MessageBoxStyle::Critical);
  archiveCommand("FileLoadArchive");
  EXPECT_FALSE(stage_.memory.holdsFile("/Quorrix/Data/load.txt"));
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), archived);
  EXPECT_EQ(stage_.form.tree().size(), 3U);
  EXPECT_EQ(stage_.form.tree().selected(), stage_.form.tree().root());
  EXPECT_EQ(stage_.panelText(1), "Last archive loaded: /Quorrix/Archives/May");
  EXPECT_EQ(stage_.form.workingPaths().currentNodesFile, Path("/Quorrix/Data/nodes.dat"));
}

TEST_F(MainFormLoadArchive, AsksBeforeItDiscardsOneSite) {
  givenTheArchive(siteRecord("seven.eight.nine/x", 'N'));
  stage_.form.tree().remove(stage_.node("one.two.three"));
  ASSERT_EQ(stage_.form.tree().size(), 2U);
  expectQuestion(kLoadMay);
  stage_.messageBox.expect(kDiscard, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel);
  archiveCommand("FileLoadArchive");
  EXPECT_EQ(stage_.form.tree().size(), 2U);
  EXPECT_NE(stage_.form.tree().find("four.five.six"), kNoNode);
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), nodes_);
}

TEST_F(MainFormLoadArchive, AsksNothingBeforeItReplacesAnEmptyDisplay) {
  givenTheArchive(siteRecord("seven.eight.nine", 'N'));
  stage_.form.tree().clear();
  expectQuestion(kLoadMay);
  archiveCommand("FileLoadArchive");
  EXPECT_NE(stage_.form.tree().find("seven.eight.nine"), kNoNode);
  EXPECT_EQ(file("/Quorrix/Data/load.txt"), "/Quorrix/Archives/May\r\n");
}

TEST_F(MainFormLoadArchive, LoadsTheSameArchiveAgainAsItWasWhateverWasTrackedSince) {
  const std::string archived = siteRecord("seven.eight.nine/x", 'N');
  givenTheArchive(archived);
  for (const int time : {1, 2}) {
    SCOPED_TRACE(time);
    expectQuestion(kLoadMay);
    expectQuestion(kDiscard);
    archiveCommand("FileLoadArchive");
    EXPECT_EQ(stage_.form.tree().size(), 3U);
    EXPECT_NE(stage_.form.tree().find("seven.eight.nine/x"), kNoNode);
    EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), archived);

    track("ten.eleven.twelve");
    EXPECT_EQ(file("/Quorrix/Data/nodes.dat").size(), 644U);
    EXPECT_EQ(file("/Quorrix/Archives/May/nodes.dat"), archived);
  }
}

TEST_F(MainFormLoadArchive, IsArchivedOverItselfWithWhatWasTrackedSince) {
  givenTheArchive(siteRecord("seven.eight.nine/x", 'N'));
  expectQuestion(kLoadMay);
  expectQuestion(kDiscard);
  archiveCommand("FileLoadArchive");
  track("ten.eleven.twelve");
  const std::string tracked = file("/Quorrix/Data/nodes.dat");

  expectQuestion(kArchiveToMay);
  expectWarning(MessageBoxButton::Ok);
  stage_.messageBox.expect("Data successfully archived to '/Quorrix/Archives/May'.",
                           MessageBoxStyle::Information);
  archiveCommand("FileArchive");
  EXPECT_EQ(file("/Quorrix/Archives/May/nodes.dat"), tracked);
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), "");
}

TEST_F(MainFormLoadArchive, LeavesTheDisplayAloneWhereThereIsNoArchive) {
  stage_.memory.givenAFile("/Quorrix/Archives/May/titles.txt", "");
  expectQuestion(kLoadMay);
  stage_.messageBox.expect(
      "Folder does not contain a critical archive file. The folder must contain at least "
      "'nodes.dat'. Canceling operation.",
      MessageBoxStyle::Exclamation);
  archiveCommand("FileLoadArchive");
  EXPECT_EQ(stage_.form.tree().size(), 4U);
  EXPECT_EQ(stage_.form.tree().selected(), stage_.node("four.five.six"));
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), nodes_);
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  EXPECT_EQ(stage_.panelText(1), "Last archive loaded: /Quorrix/Archives/April");
}

TEST_F(MainFormDeleteArchive, DeletesNothingOfAFolderWithNothingButTitles) {
  stage_.memory.givenAFile("/Quorrix/Archives/May/titles.txt", "");
  stage_.memory.givenAFile("/Quorrix/Archives/May/NODES.DAT", "");
  expectQuestion("Delete archive '/Quorrix/Archives/May'?");
  stage_.messageBox.expect(
      "Error deleting archive '/Quorrix/Archives/May'. Unable to delete some archive files.",
      MessageBoxStyle::Exclamation);
  archiveCommand("FileDeleteArchive");
  EXPECT_TRUE(stage_.memory.holdsFile("/Quorrix/Archives/May/titles.txt"));
  EXPECT_TRUE(stage_.memory.holdsFile("/Quorrix/Archives/May/NODES.DAT"));
}

TEST_F(MainFormDeleteArchive, DeletesTheWorkingFilesAndWhatNeedsThemFails) {
  expectQuestion("Delete archive '/Quorrix/Data'?");
  stage_.messageBox.expect("Archive files in '/Quorrix/Data' successfully deleted.",
                           MessageBoxStyle::Information);
  archiveCommand("FileDeleteArchive", "/Quorrix/Data");
  EXPECT_FALSE(stage_.memory.holdsFile("/Quorrix/Data/nodes.dat"));
  EXPECT_EQ(file("/Quorrix/Data/load.txt"), "/Quorrix/Archives/April\r\n");
  EXPECT_EQ(stage_.form.tree().size(), 4U);

  stage_.form.tree().select(stage_.form.tree().root());
  stage_.messageBox.expect(
      "You are about to delete the selected site and all its sub sites. Deleting will remove the "
      "selected items from the current view and permanently destroy all information associated "
      "with them. Delete anyway?",
      MessageBoxStyle::ConfirmWarning, MessageBoxButton::Ok);
  stage_.messageBox.expect("Unable to find file. Stopping delete.", MessageBoxStyle::Critical);
  stage_.choose("FileDelete");
}

TEST_F(MainFormDeleteArchive, DeletesTheArchivesFilesAndNothingElse) {
  givenTheArchive("x");
  stage_.memory.givenAFile("/Quorrix/Archives/May/readme.txt", "mine");
  expectQuestion("Delete archive '/Quorrix/Archives/May'?");
  stage_.messageBox.expect("Archive files in '/Quorrix/Archives/May' successfully deleted.",
                           MessageBoxStyle::Information);
  archiveCommand("FileDeleteArchive");
  for (const auto* const name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
    EXPECT_FALSE(stage_.memory.holdsFile(Path("/Quorrix/Archives/May") / name)) << name;
  }
  EXPECT_EQ(file("/Quorrix/Archives/May/readme.txt"), "mine");
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), nodes_);
  EXPECT_EQ(stage_.form.tree().size(), 4U);
}

TEST_F(MainFormArchivesTest, DoNothingWhileTracking) {
  for (const char* const command : {"FileArchive", "FileLoadArchive", "FileDeleteArchive"}) {
    stage_.messageBox.expect("You must stop tracking websites before using this feature.",
                             MessageBoxStyle::Information);
    QTimer::singleShot(0, &stage_.form, [this, command] {
      stage_.choose(command);
      stage_.choose("FileStopTrack");
    });
    stage_.track();
  }
  EXPECT_TRUE(stage_.messageBox.isThrough());
}

// The dialogs read the disk while they are constructed, before they have a guard of their
// own.
TEST_F(MainFormArchivesTest, TellOfAFailureWhileTheirDialogsAreMade) {
  for (const auto& [command, sentence] :
       {std::pair{"FileArchive", "Not enough memory available to open Archive Sites window."},
        std::pair{"FileLoadArchive",
                  "Not enough memory available to open Load Sites Archive window."},
        std::pair{"FileDeleteArchive",
                  "Not enough memory available to open Delete Sites Archive window."}}) {
    stage_.files.reset();
    stage_.files.onEveryCall([this] {
      if (stage_.files.callsOf(test::FileCall::FolderNames) > 0) throw std::bad_alloc();
    });
    stage_.messageBox.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                             [this] { EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor); });
    EXPECT_NO_THROW(stage_.choose(command));
    EXPECT_TRUE(stage_.messageBox.isThrough()) << command;
    EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
  }
  stage_.files.onEveryCall({});
}

TEST_F(MainFormArchivesTest, ShowTheirDialogsWithoutAnHourglassAfterAFailure) {
  for (const auto& [command, sentence] :
       {std::pair{"FileArchive", "Error. Unable to open Archive Sites window."},
        std::pair{"FileLoadArchive", "Error. Unable to open Load Sites Archive window."},
        std::pair{"FileDeleteArchive", "Error. Unable to open Delete Sites Archive window."}}) {
    // The root is listed during construction, the folder of archives during the load.
    stage_.files.reset();
    stage_.files.failAtCall(test::FileCall::FolderNames, 2, 57);
    stage_.messageBox.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                             [this] { EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor); });
    bool isShown = false;
    QTimer::singleShot(0, &stage_.form, [this, &isShown] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      isShown = true;
      EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
      dialog->reject();
    });
    stage_.choose(command);
    EXPECT_TRUE(isShown) << command;
  }
}

}  // namespace
}  // namespace quorrix
