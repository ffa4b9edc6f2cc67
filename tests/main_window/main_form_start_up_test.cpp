// The start-up of the main form, from the splash screen to the tree on the screen, and
// every way in which it ends the program.
#include <gtest/gtest.h>

#include <QLabel>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <vector>

#include "main_window/main_form_stage.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

using test::FileCall;
using test::MainFormStage;
using test::openWindow;
using test::siteRecord;

// The windows on the screen, in the order in which start-up opens them, and the pointer.
std::string onScreen(const MainFormStage& stage) {
  std::string windows;
  for (const char* const name : {"SplashScreen", "MainForm", "LoadWaitDialog"}) {
    if (openWindow(QString::fromLatin1(name)) != nullptr) windows += std::string(name) + " ";
  }
  return windows + (stage.pointer() == Qt::WaitCursor ? "hourglass" : "arrow");
}

TEST(MainFormStartUp, ShowsTheSplashScreenForTwoSecondsAndTheWaitDialogForOne) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  std::vector<std::string> seen;
  stage.events.atEachPause([&](int) { seen.push_back(onScreen(stage)); });
  EXPECT_TRUE(stage.form.Form_Load());
  // Ten pauses a second.
  std::vector<std::string> expected(20, "SplashScreen arrow");
  expected.insert(expected.end(), 10, "MainForm LoadWaitDialog hourglass");
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(onScreen(stage), "MainForm arrow");
}

TEST(MainFormStartUp, TouchesFilesOnlyWhenTheWaitIsOver) {
  MainFormStage stage;
  stage.givenAnInstalledProgram(siteRecord("one.two.three", 'N'));
  stage.events.atEachPause([&stage](int) { EXPECT_TRUE(stage.files.calls().empty()); });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.files.calls(),
            std::vector<FileCall>({FileCall::FolderExists, FileCall::MakeFolder,
                                   FileCall::OpenRandomAccess, FileCall::Length, FileCall::ReadAt,
                                   FileCall::FileExists, FileCall::FileExists, FileCall::FileExists,
                                   FileCall::ReadFirstLine}));
}

TEST(MainFormStartUp, PutsTheWaitDialogOverTheMiddleOfTheWindow) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  bool isLookedAt = false;
  stage.events.atEachPause([&](int pause) {
    if (pause != 21) return;
    const QWidget* const dialog = openWindow(QStringLiteral("LoadWaitDialog"));
    ASSERT_NE(dialog, nullptr);
    const QPoint apart = dialog->geometry().center() - stage.form.geometry().center();
    // The widths of the frames were not known when the dialog was placed.
    EXPECT_LE(apart.manhattanLength(), 6);
    isLookedAt = true;
  });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_TRUE(isLookedAt);
}

TEST(MainFormStartUp, MakesTheArchivesFolderWhereItIsMissing) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_TRUE(stage.memory.folderExists("/Quorrix/Archives"));
}

TEST(MainFormStartUp, LeavesAnArchivesFolderAsItIs) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  stage.memory.givenAFile("/Quorrix/Archives/May/nodes.dat", siteRecord("one.two.three", 'N'));
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.files.callsOf(FileCall::MakeFolder), 0);
  EXPECT_EQ(stage.memory.bytesOf("/Quorrix/Archives/May/nodes.dat"),
            siteRecord("one.two.three", 'N'));
}

TEST(MainFormStartUp, PointsThePathsIntoTheDataFolder) {
  MainFormStage stage;
  stage.start();
  const WorkingPaths& paths = stage.form.workingPaths();
  EXPECT_EQ(paths.loadPath.generic_string(), "/Quorrix/Data");
  EXPECT_EQ(paths.currentNodesFile.generic_string(), "/Quorrix/Data/nodes.dat");
  EXPECT_EQ(paths.currentPurchasesFile.generic_string(), "/Quorrix/Data/purchases.dat");
  EXPECT_EQ(paths.currentUserIDPasswordFile.generic_string(), "/Quorrix/Data/info.dat");
  EXPECT_EQ(paths.currentURLNotesFile.generic_string(), "/Quorrix/Data/notes.dat");
}

TEST(MainFormStartUp, ShowsTheHostsAndKeepsThemClosed) {
  MainFormStage stage;
  stage.start(siteRecord("one.two.three/a/b", 'N') + siteRecord("four.five.six/x", 'S'));
  EXPECT_TRUE(stage.isExpanded("ROOT"));
  EXPECT_TRUE(stage.isOnScreen("one.two.three"));
  EXPECT_TRUE(stage.isOnScreen("four.five.six"));
  EXPECT_FALSE(stage.isExpanded("one.two.three"));
  EXPECT_FALSE(stage.isExpanded("four.five.six"));
  EXPECT_EQ(stage.form.tree().size(), 6U);
}

TEST(MainFormStartUp, SelectsTheRoot) {
  MainFormStage stage;
  stage.start(siteRecord("one.two.three", 'N'));
  EXPECT_EQ(stage.form.tree().selected(), stage.form.tree().root());
  EXPECT_EQ(stage.treeView().currentIndex(), stage.indexOf("ROOT"));
  EXPECT_EQ(stage.caption(), "Quorrix");
}

TEST(MainFormStartUp, FillsTheStatusPanels) {
  MainFormStage stage;
  stage.start();
  EXPECT_EQ(stage.panelText(1), "Last archive loaded: none");
  EXPECT_EQ(stage.panelText(2), "Right click site address for site menu.");
}

TEST(MainFormStartUp, ShowsTheFirstLineOfTheLastLoadedRecordWithoutItsOuterBlanks) {
  const struct {
    const char* loadFile;
    const char* panel;
  } cases[] = {
      {"  Archive1  \r\n", "Last archive loaded: Archive1"},
      {"Archive1", "Last archive loaded: Archive1"},
      {"My Archive\nsecond line\n", "Last archive loaded: My Archive"},
      {"\r\nsecond line\r\n", "Last archive loaded: "},
      {"   \r\n", "Last archive loaded: "},
      {"", "Last archive loaded: "},
      {"/Quorrix/Archives/Zo\xc3\xab\n", "Last archive loaded: /Quorrix/Archives/Zo\xc3\xab"},
      {"<b>May</b>\n", "Last archive loaded: <b>May</b>"},
  };
  for (const auto& [loadFile, panel] : cases) {
    MainFormStage stage;
    stage.givenAnInstalledProgram("", loadFile);
    EXPECT_TRUE(stage.form.Form_Load());
    EXPECT_EQ(stage.panelText(1), panel);
  }
}

TEST(MainFormStartUp, MakesAnEmptySiteFileWhereItIsMissing) {
  MainFormStage stage;
  stage.memory.givenAFile("/Quorrix/Data/load.txt", "none\r\n");
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.memory.bytesOf("/Quorrix/Data/nodes.dat"), "");
  EXPECT_EQ(stage.form.tree().size(), 1U);
}

TEST(MainFormStartUp, KeepsNoFileOpen) {
  MainFormStage stage;
  stage.start(siteRecord("one.two.three", 'N'));
  EXPECT_EQ(stage.memory.openFiles(), 0);
}

TEST(MainFormStartUp, PassesOverARecordThatCannotBeRead) {
  MainFormStage stage;
  stage.givenAnInstalledProgram(siteRecord("one.two.three", 'N') +
                                siteRecord("four.five.six", 'N'));
  stage.files.spoilBytes(0, 10, failure::kDeviceIo);
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.form.tree().find("one.two.three"), kNoNode);
  EXPECT_NE(stage.form.tree().find("four.five.six"), kNoNode);
}

struct Sentence {
  int number;
  const char* text;
};

constexpr Sentence kSentences[] = {
    {7, "Not enough memory available to load program."},
    {28, "Not enough memory available to load program."},
    {31001, "Not enough memory available to load program."},
    {53, "Unable to find file. Ending program."},
    {57, "Device I/O error. Ending program."},
    {67, "Too many files open. Ending program."},
    {68, "Device not ready. Ending program."},
    {71, "Disk not ready. Ending program."},
    {75, "Path/file access error. Ending program."},
    {321, "Invalid file format. Ending program."},
    {5, "Error. Ending program.5"},
    {6, "Error. Ending program.6"},
    {9, "Error. Ending program.9"},
    {51, "Error. Ending program.51"},
    {61, "Error. Ending program.61"},
    {76, "Error. Ending program.76"},
    {35601, "Error. Ending program.35601"},
};

// Starts a stage that is going to fail, and expects the message and the end of the
// program.
void expectStartUpToEndWith(MainFormStage& stage, const char* sentence) {
  QSignalSpy unloaded(&stage.form, &MainForm::unloaded);
  stage.messageBox.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok, [&] {
    EXPECT_EQ(onScreen(stage), "MainForm arrow");
    EXPECT_EQ(unloaded.count(), 0);
  });
  EXPECT_FALSE(stage.form.Form_Load());
  EXPECT_TRUE(stage.messageBox.isThrough());
  EXPECT_FALSE(stage.form.isVisible());
  EXPECT_EQ(unloaded.count(), 1);
  EXPECT_EQ(stage.memory.openFiles(), 0);
}

class MainFormStartUpFailure : public testing::TestWithParam<FileCall> {};

TEST_P(MainFormStartUpFailure, EndsTheProgramWithItsSentence) {
  for (const auto& [number, text] : kSentences) {
    SCOPED_TRACE(number);
    MainFormStage stage;
    stage.givenAnInstalledProgram(siteRecord("one.two.three", 'N'));
    stage.files.failAtCall(GetParam(), 1, number);
    expectStartUpToEndWith(stage, text);
  }
}

INSTANTIATE_TEST_SUITE_P(AtEachFileOperation, MainFormStartUpFailure,
                         testing::Values(FileCall::FolderExists, FileCall::MakeFolder,
                                         FileCall::OpenRandomAccess, FileCall::Length,
                                         FileCall::ReadFirstLine));

// A program that dies while it empties the files leaves this behind.
TEST(MainFormStartUp, CreatesDataFilesThatAreMissing) {
  MainFormStage stage;
  stage.memory.givenAFile("/Quorrix/Data/load.txt", "none\r\n");
  stage.memory.givenAFile("/Quorrix/Data/notes.dat", "kept");
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.memory.bytesOf("/Quorrix/Data/nodes.dat"), "");
  EXPECT_EQ(stage.memory.bytesOf("/Quorrix/Data/notes.dat"), "kept");
  EXPECT_EQ(stage.memory.bytesOf("/Quorrix/Data/info.dat"), "");
  EXPECT_EQ(stage.memory.bytesOf("/Quorrix/Data/purchases.dat"), "");
}

TEST(MainFormStartUp, GoesOnWhenItCannotCreateAMissingFile) {
  MainFormStage stage;
  stage.memory.givenAFile("/Quorrix/Data/load.txt", "none\r\n");
  constexpr int kAfterTheSiteFile = 2;
  stage.files.failAtCall(FileCall::OpenRandomAccess, kAfterTheSiteFile, 61);
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_FALSE(stage.memory.holdsFile("/Quorrix/Data/notes.dat"));
  EXPECT_EQ(stage.memory.bytesOf("/Quorrix/Data/info.dat"), "");
}

TEST(MainFormStartUp, EndsTheProgramWithoutADataFolder) {
  MainFormStage stage;
  stage.memory.givenAFolder("/Quorrix");
  expectStartUpToEndWith(stage, "Error. Ending program.76");
}

TEST(MainFormStartUp, EndsTheProgramWithoutTheLastLoadedRecord) {
  MainFormStage stage;
  stage.memory.givenAFile("/Quorrix/Data/nodes.dat", "");
  expectStartUpToEndWith(stage, "Unable to find file. Ending program.");
}

TEST(MainFormStartUp, EndsTheProgramWhenSomethingElseIsNamedArchives) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  stage.memory.givenAFile("/Quorrix/Archives", "a file");
  expectStartUpToEndWith(stage, "Path/file access error. Ending program.");
}

TEST(MainFormStartUp, EndsTheProgramWhenTheSiteFileIsReadOnly) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  stage.memory.givenAReadOnlyFile("/Quorrix/Data/nodes.dat", siteRecord("one.two.three", 'N'));
  expectStartUpToEndWith(stage, "Path/file access error. Ending program.");
}

TEST(MainFormStartUp, UnloadsOnceWhenItsWindowIsClosedUnderTheMessage) {
  MainFormStage stage;
  stage.memory.givenAFolder("/Quorrix");
  QSignalSpy unloaded(&stage.form, &MainForm::unloaded);
  stage.messageBox.expect("Error. Ending program.76", MessageBoxStyle::Critical,
                          MessageBoxButton::Ok, [&stage] { stage.form.close(); });
  EXPECT_FALSE(stage.form.Form_Load());
  EXPECT_EQ(unloaded.count(), 1);
  EXPECT_FALSE(stage.form.isVisible());
}

// Closes the program in the given pause of the start-up, and expects that nothing
// follows.
void expectToEndQuietlyWhenClosedInPause(int pauseOfClosing) {
  MainFormStage stage;
  stage.givenAnInstalledProgram(siteRecord("one.two.three", 'N'));
  QSignalSpy unloaded(&stage.form, &MainForm::unloaded);
  stage.events.atEachPause([&](int pause) {
    EXPECT_LE(pause, pauseOfClosing);
    if (pause == pauseOfClosing) stage.form.close();
  });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(unloaded.count(), 1);
  EXPECT_EQ(stage.events.pauses(), pauseOfClosing);
  EXPECT_TRUE(stage.files.calls().empty());
  for (const char* const name : {"SplashScreen", "MainForm", "LoadWaitDialog"}) {
    EXPECT_EQ(openWindow(QString::fromLatin1(name)), nullptr) << name;
  }
}

TEST(MainFormStartUp, EndsQuietlyWhenItIsClosedDuringTheSplashScreen) {
  expectToEndQuietlyWhenClosedInPause(1);
  expectToEndQuietlyWhenClosedInPause(20);
}

TEST(MainFormStartUp, EndsQuietlyWhenItsWindowIsClosedDuringTheWait) {
  expectToEndQuietlyWhenClosedInPause(21);
  expectToEndQuietlyWhenClosedInPause(30);
}

TEST(MainFormStartUp, EndsQuietlyWhenExitIsChosenDuringTheWait) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  stage.events.atEachPause([&stage](int pause) {
    if (pause == 25) stage.choose("FileExit");
  });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.events.pauses(), 25);
  EXPECT_TRUE(stage.files.calls().empty());
  EXPECT_FALSE(stage.form.isVisible());
}

constexpr const char* kCommandsOnTheData[] = {"FileStartTrack",  "FileStopTrack",    "FileSearch",
                                              "FileDelete",      "FileClear",        "FileArchive",
                                              "FileLoadArchive", "FileDeleteArchive"};

// The tree and the site file are not loaded yet, so these commands would say wrong things
// about them.
TEST(MainFormStartUp, OffersWhatNeedsTheDataOnceTheyAreLoaded) {
  MainFormStage stage;
  stage.givenAnInstalledProgram(siteRecord("one.two.three", 'N'));
  stage.windows.show({test::browserWindow("Page - Netscape", "http://four.five.six/", "Connect:")});
  int presses = 0;
  stage.events.atEachPause([&](int pause) {
    if (pause != 25) return;
    for (const char* const command : kCommandsOnTheData) {
      // A command that opened a dialog would block until it is closed.
      ASSERT_FALSE(stage.action(command)->isEnabled()) << command;
      stage.choose(command);
      ++presses;
    }
  });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(presses, 8);
  EXPECT_EQ(stage.messageBox.shown(), 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(stage.windows.enumerations(), 0);
  EXPECT_EQ(stage.form.tree().size(), 2U);
  EXPECT_EQ(stage.panelText(2), "Right click site address for site menu.");
  for (const char* const command : kCommandsOnTheData) {
    EXPECT_TRUE(stage.action(command)->isEnabled()) << command;
  }
}

TEST(MainFormStartUp, AnswersWhatNeedsNoDataDuringTheWait) {
  MainFormStage stage;
  stage.givenAnInstalledProgram();
  stage.memory.givenAFile("/Quorrix/Quorrix.hlp", "<h1 id=\"top\">The manual</h1>");
  bool isAboutShown = false;
  stage.events.atEachPause([&](int pause) {
    if (pause != 25) return;
    stage.choose("HelpHelp");
    EXPECT_NE(openWindow(QStringLiteral("HelpWindow")), nullptr);
    QTimer::singleShot(0, &stage.form, [&isAboutShown] {
      auto* const about = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(about, nullptr);
      isAboutShown = about->objectName() == QStringLiteral("AboutBox");
      about->reject();
    });
    stage.choose("HelpAbout");
    EXPECT_EQ(onScreen(stage), "MainForm LoadWaitDialog hourglass");
  });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_TRUE(isAboutShown);
  EXPECT_EQ(onScreen(stage), "MainForm arrow");
}

TEST(MainFormStartUp, TakesAClickIntoTheEmptyTree) {
  MainFormStage stage;
  stage.givenAnInstalledProgram(siteRecord("one.two.three", 'N'));
  stage.events.atEachPause([&stage](int pause) {
    if (pause != 25) return;
    QTest::mouseClick(stage.treeView().viewport(), Qt::RightButton, {}, QPoint(20, 20));
    EXPECT_EQ(stage.caption(), "Quorrix");
    EXPECT_FALSE(stage.action("PopUpShowAll")->isEnabled());
    stage.popupMenu().close();
  });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.form.tree().size(), 2U);
}

TEST(MainFormStartUp, TakesAKeyIntoTheEmptyTree) {
  MainFormStage stage;
  stage.givenAnInstalledProgram(siteRecord("one.two.three", 'N'));
  stage.events.atEachPause([&stage](int pause) {
    if (pause == 25) QTest::keyClicks(&stage.treeView(), QStringLiteral("a"));
  });
  EXPECT_TRUE(stage.form.Form_Load());
  EXPECT_EQ(stage.form.tree().selected(), stage.form.tree().root());
}

}  // namespace
}  // namespace quorrix
