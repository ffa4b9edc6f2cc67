// The archive commands, from the menu to the files.
#include <QLineEdit>
#include <QTimer>

#include "records/record_file_stage.h"
#include "shell/main_window/main_form.h"
#include "shell/main_window/main_form_stage.h"

namespace quorrix {
namespace {

using test::MainFormStage;
using test::siteRecord;

class MainFormArchivesTest : public testing::Test {
 protected:
  MainFormArchivesTest() {
    stage_.memory.givenAFolder("/Quorrix/Archives/May");
    stage_.givenAnInstalledProgram(nodes_, "/Quorrix/Archives/April\r\n");
    EXPECT_TRUE(stage_.form.Form_Load());
    stage_.files.reset();
    // As by a click: the caption names the site.
    stage_.form.tree().select(stage_.node("four.five.six"));
    stage_.form.TreeView_MouseUp(mouse_button::kLeft, 0, 0, 0);
    stage_.memory.givenAFile("/Quorrix/Data/notes.dat", notes_);
    stage_.memory.givenAFile("/Quorrix/Data/info.dat", "");
    stage_.memory.givenAFile("/Quorrix/Data/purchases.dat", "");
  }

  const std::string& file(const char* path) { return stage_.memory.bytesOf(path); }

  // Runs a command of the menu, and in the dialog that it opens chooses the archive
  // "May" and presses OK.
  void archiveCommand(const char* command) {
    QTimer::singleShot(0, &stage_.form, [this] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(stage_.pointer(), Qt::WaitCursor);
      auto* const folders = dialog->findChild<FolderList*>(QStringLiteral("Dir1"));
      folders->setPath("/Quorrix/Archives/May");
      dialog->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
      if (dialog->isVisible()) dialog->reject();
    });
    stage_.choose(command);
    EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
  }

  void expectQuestion(const char* question) {
    stage_.messageBox.expect(question, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
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
  expectQuestion("Archive current display and associated data to '/Quorrix/Archives/May'?");
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
  expectQuestion("Archive current display and associated data to '/Quorrix/Archives/May'?");
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
  expectQuestion("Archive current display and associated data to '/Quorrix/Archives/May'?");
  stage_.messageBox.expect(
      "The selected folder contains Quorrix archive files. They will be overwritten if you "
      "continue. Archive anyway?",
      MessageBoxStyle::ConfirmWarning, MessageBoxButton::Ok);
  stage_.messageBox.expect("Unable to archive sites. Unable to find file.",
                           MessageBoxStyle::Critical);
  archiveCommand("FileArchive");
  EXPECT_FALSE(stage_.memory.holdsFile("/Quorrix/Archives/May/nodes.dat"));
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), nodes_);
  EXPECT_EQ(stage_.form.tree().size(), 4U);
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
  expectQuestion("Load archive data from '/Quorrix/Archives/May'?");
  expectQuestion(
      "The current display, and associated data, will be discarded before loading archive. "
      "Archive the current display first if you wish to retain the information. Load archive "
      "anyway?");
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
  expectQuestion("Load archive data from '/Quorrix/Archives/May'?");
  stage_.messageBox.expect("Unable to load archive. Unable to find file.",
                           MessageBoxStyle::Critical);
  archiveCommand("FileLoadArchive");
  EXPECT_NE(stage_.form.tree().find("seven.eight.nine"), kNoNode);
  EXPECT_EQ(file("/Quorrix/Data/nodes.dat"), siteRecord("seven.eight.nine", 'N'));
  EXPECT_EQ(file("/Quorrix/Data/purchases.dat"), "p");
  EXPECT_EQ(file("/Quorrix/Data/notes.dat"), notes_);
  EXPECT_EQ(stage_.form.workingPaths().currentNodesFile, Path("/Quorrix/Archives/May/nodes.dat"));
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
    stage_.choose("FileStartTrack");
  }
  EXPECT_TRUE(stage_.messageBox.isThrough());
}

}  // namespace
}  // namespace quorrix
