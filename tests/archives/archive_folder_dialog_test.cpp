// What the three dialogs that work on an existing folder have in common.
#include "archives/archive_folder_dialog.h"

#include <QLabel>
#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <ostream>

#include "archives/archive_dialog.h"
#include "archives/archive_stage.h"
#include "archives/delete_archive_dialog.h"
#include "archives/load_archive_dialog.h"
#include "shell/pointer.h"

namespace quorrix {
namespace {

using test::Texts;

class Loadable {
 public:
  Loadable() = default;
  Loadable(const Loadable&) = delete;
  Loadable& operator=(const Loadable&) = delete;
  virtual ~Loadable() = default;
  virtual QDialog& dialog() = 0;
  virtual void load() = 0;
};

template <typename Dialog>
class LoadableDialog final : public Loadable {
 public:
  explicit LoadableDialog(const ArchiveDialogParts& parts) : dialog_(parts, {}) {}
  QDialog& dialog() override { return dialog_; }
  void load() override { dialog_.Form_Load(); }

 private:
  Dialog dialog_;
};

struct Kind {
  const char* name;
  const char* caption;
  const char* question;  // which OK asks about the folder of archives
  std::unique_ptr<Loadable> (*make)(const ArchiveDialogParts&);
};

template <typename Dialog>
std::unique_ptr<Loadable> make(const ArchiveDialogParts& parts) {
  return std::make_unique<LoadableDialog<Dialog>>(parts);
}

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

constexpr Kind kKinds[] = {
    {"ArchiveDialog", "Archive Sites",
     "Archive current display and associated data to '/opt/quorrix/Archives'?",
     make<ArchiveDialog>},
    {"LoadArchiveDialog", "Load Sites Archive", "Load archive data from '/opt/quorrix/Archives'?",
     make<LoadArchiveDialog>},
    {"DeleteArchiveDialog", "Delete Sites Archive", "Delete archive '/opt/quorrix/Archives'?",
     make<DeleteArchiveDialog>},
};

class ExistingArchiveDialogTest : public test::ArchiveStage,
                                  public testing::WithParamInterface<Kind> {
 protected:
  QDialog& dialog() { return loadable_->dialog(); }

  void open() {
    loadable_->load();
    dialog().show();
  }

  // Types the path into the box, over the text that is there.
  void type(const char* path) {
    dialog().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog()));
    auto& box = control<QLineEdit>(dialog(), "Text1");
    box.setFocus();
    box.selectAll();
    box.insert(QString::fromUtf8(path));
  }

  void pressEnterInTheBox() {
    QTest::keyClick(&control<QLineEdit>(dialog(), "Text1"), Qt::Key_Return);
  }

  // Expects that OK asks about this folder, and cancels.
  void expectQuestionAbout(const std::string& folder, const std::function<void()>& look = {}) {
    std::string question = GetParam().question;
    const std::string asked = "/opt/quorrix/Archives";
    messageBox_.expect(question.replace(question.find(asked), asked.size(), folder),
                       MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel, look);
  }

  void expectTheFolderOfArchives() {
    EXPECT_EQ(openFolderOf(dialog()), "/opt/quorrix/Archives");
    EXPECT_EQ(filesOf(dialog()), Texts{"readme.txt"});
    EXPECT_EQ(shownInBox(dialog()), "/opt/quorrix/Archives");
  }

  std::unique_ptr<Loadable> loadable_ = GetParam().make(parts());
};

TEST_P(ExistingArchiveDialogTest, IsNamedAndCaptioned) {
  EXPECT_EQ(dialog().objectName().toStdString(), GetParam().name);
  EXPECT_EQ(dialog().windowTitle().toStdString(), GetParam().caption);
  EXPECT_EQ(control<QAbstractButton>(dialog(), "OKButton").text(), QStringLiteral("OK"));
  EXPECT_EQ(control<QAbstractButton>(dialog(), "CancelButton").text(), QStringLiteral("Cancel"));
}

TEST_P(ExistingArchiveDialogTest, OpensOnTheFolderOfArchives) {
  open();
  expectTheFolderOfArchives();
  EXPECT_EQ(driveShownIn(dialog()), "/");
}

TEST_P(ExistingArchiveDialogTest, OpensOverTheMiddleOfTheMainWindow) {
  open();
  const QPoint apart = dialog().frameGeometry().center() - mainWindow_.frameGeometry().center();
  EXPECT_LE(apart.manhattanLength(), 2) << "half pixels are cut off";
}

TEST_P(ExistingArchiveDialogTest, SharesItsWidthBetweenFoldersAndFiles) {
  open();
  dialog().resize(1200, 600);
  QCoreApplication::processEvents();
  EXPECT_NEAR(control<FolderList>(dialog(), "Dir1").width(),
              control<FileList>(dialog(), "File1").width(), 1);
}

TEST_P(ExistingArchiveDialogTest, HasTheButtonsFartherFromTheBoxThanItsLabel) {
  open();
  const auto& box = control<QLineEdit>(dialog(), "Text1");
  const auto labels = dialog().findChildren<QLabel*>();
  const auto label = std::ranges::find(labels, &box, &QLabel::buddy);
  ASSERT_NE(label, labels.end());
  const int fromLabel = box.geometry().top() - (*label)->geometry().bottom();
  const int fromButtons =
      control<QAbstractButton>(dialog(), "OKButton").geometry().top() - box.geometry().bottom();
  EXPECT_LT(fromLabel, fromButtons);
}

TEST_P(ExistingArchiveDialogTest, FollowsTheFolderThatTheUserOpens) {
  open();
  openIn(dialog(), "May");
  EXPECT_EQ(filesOf(dialog()), (Texts{"nodes.dat", "notes.dat"}));
  EXPECT_EQ(shownInBox(dialog()), "/opt/quorrix/Archives/May");
}

TEST_P(ExistingArchiveDialogTest, FollowsTheDrive) {
  open();
  control<QComboBox>(dialog(), "Drive1").setCurrentIndex(1);  // the dialog is not notified
  chooseDrive(dialog(), "/media/stick");
  EXPECT_EQ(openFolderOf(dialog()), "/media/stick");
  EXPECT_EQ(filesOf(dialog()), Texts{"photo"});
  EXPECT_EQ(shownInBox(dialog()), "/media/stick");
}

TEST_P(ExistingArchiveDialogTest, KeepsItsFolderButShowsTheDriveWithoutAMedium) {
  for (const int number : {71, 68, 75, 57, 7}) {
    open();
    disk_.failListing("/media/empty", number);
    messageBox_.expect("Device not ready.", MessageBoxStyle::Critical, MessageBoxButton::Ok,
                       [this] { EXPECT_EQ(driveShownIn(dialog()), "/media/empty"); });
    chooseDrive(dialog(), "/media/empty");
    EXPECT_TRUE(messageBox_.isThrough());
    EXPECT_EQ(driveShownIn(dialog()), "/media/empty");
    expectTheFolderOfArchives();
    EXPECT_TRUE(dialog().isVisible());
    chooseDrive(dialog(), "/");
  }
}

TEST_P(ExistingArchiveDialogTest, KeepsItsFolderWhenItsFilesCannotBeListed) {
  open();
  control<QComboBox>(dialog(), "Drive1").setCurrentIndex(1);
  files_.failAtCall(test::FileCall::FileNames, 1, 57);
  messageBox_.expect("Device not ready.", MessageBoxStyle::Critical);
  chooseDrive(dialog(), "/media/stick");
  EXPECT_EQ(driveShownIn(dialog()), "/media/stick");
  expectTheFolderOfArchives();
}

TEST_P(ExistingArchiveDialogTest, TellsWhyAFolderDoesNotOpen) {
  open();
  disk_.failListing("/opt/quorrix/Archives/May", 75);
  messageBox_.expect("Path/file access error.", MessageBoxStyle::Critical);
  openIn(dialog(), "May");
  expectTheFolderOfArchives();
}

TEST_P(ExistingArchiveDialogTest, ShowsAllTheSameWhenItsLoadFails) {
  const std::string window = " " + std::string(GetParam().caption) + " window.";
  const std::string memory = "Not enough memory available to open" + window;
  const std::string other = "Error. Unable to open" + window;
  const std::pair<int, std::string> kSentences[] = {{7, memory},   {28, memory}, {31001, other},
                                                    {57, other},   {71, other},  {75, other},
                                                    {35601, other}};
  for (const auto& [number, sentence] : kSentences) {
    disk_.failListing("/opt/quorrix/Archives", number);
    messageBox_.expect(sentence, MessageBoxStyle::Critical);
    open();
    EXPECT_TRUE(messageBox_.isThrough()) << number;
    EXPECT_TRUE(dialog().isVisible());
    EXPECT_EQ(openFolderOf(dialog()), "/");
    EXPECT_EQ(shownInBox(dialog()), "");
  }
}

TEST_P(ExistingArchiveDialogTest, ShowsTheFilesOfTheRootWhenItsLoadFails) {
  disk_.givenAFile("/vmlinuz", "");
  loadable_ = GetParam().make(parts());
  disk_.failListing("/opt/quorrix/Archives", 75);
  messageBox_.expect("Error. Unable to open " + std::string(GetParam().caption) + " window.",
                     MessageBoxStyle::Critical);
  open();
  EXPECT_EQ(openFolderOf(dialog()), "/");
  EXPECT_EQ(filesOf(dialog()), Texts{"vmlinuz"});
}

TEST_P(ExistingArchiveDialogTest, StaysAsFarAsItsLoadGot) {
  files_.failAtCall(test::FileCall::FileNames, 1, 57);
  messageBox_.expect("Error. Unable to open " + std::string(GetParam().caption) + " window.",
                     MessageBoxStyle::Critical);
  open();
  EXPECT_EQ(openFolderOf(dialog()), "/opt/quorrix/Archives");
  EXPECT_EQ(filesOf(dialog()), Texts{});
  EXPECT_EQ(shownInBox(dialog()), "");
}

TEST_P(ExistingArchiveDialogTest, IsUsableWithoutTheFolderOfArchives) {
  ArchiveDialogParts missing = parts();
  missing.archives = "/opt/quorrix/Missing";
  loadable_ = GetParam().make(missing);
  messageBox_.expect("Error. Unable to open " + std::string(GetParam().caption) + " window.",
                     MessageBoxStyle::Critical);
  open();
  messageBox_.expect("You must select a valid directory.", MessageBoxStyle::Exclamation);
  press(dialog(), "OKButton");
  openIn(dialog(), "opt");
  EXPECT_EQ(shownInBox(dialog()), "/opt");
}

TEST_P(ExistingArchiveDialogTest, IsPlacedBeforeItsLoadFails) {
  loadable_->load();
  const QPoint centred = dialog().pos();
  dialog().move(0, 0);
  disk_.failListing("/opt/quorrix/Archives", 75);
  messageBox_.expect("Error. Unable to open " + std::string(GetParam().caption) + " window.",
                     MessageBoxStyle::Critical);
  loadable_->load();
  EXPECT_EQ(dialog().pos(), centred);
  EXPECT_NE(centred, QPoint(0, 0));
}

// While the main window opens a dialog, its pointer is the hourglass.
TEST_P(ExistingArchiveDialogTest, GivesTheMainWindowItsPointerBackWhenItsLoadFails) {
  const Hourglass hourglass(mainWindow_);
  disk_.failListing("/opt/quorrix/Archives", 57);
  Qt::CursorShape underTheMessage = Qt::WaitCursor;
  messageBox_.expect("Error. Unable to open " + std::string(GetParam().caption) + " window.",
                     MessageBoxStyle::Critical, MessageBoxButton::Ok,
                     [&] { underTheMessage = mainWindow_.cursor().shape(); });
  open();
  EXPECT_EQ(underTheMessage, Qt::ArrowCursor);
  EXPECT_EQ(mainWindow_.cursor().shape(), Qt::ArrowCursor);
}

TEST_P(ExistingArchiveDialogTest, TellsOfAFailureThatItsOperationHasNoSentenceFor) {
  open();
  control<QLineEdit>(dialog(), "Text1").clear();
  messageBox_.expect("You must select a valid directory.", MessageBoxStyle::Exclamation,
                     MessageBoxButton::Ok, [] { throw std::bad_alloc(); });
  messageBox_.expect("Out of memory.", MessageBoxStyle::Critical);
  press(dialog(), "OKButton");
  EXPECT_TRUE(dialog().isVisible());
}

TEST_P(ExistingArchiveDialogTest, RefusesAPathOfFewerThanFourCharacters) {
  open();
  for (const char* path : {"", "/", "C:\\", "\u00e9\u00e9\u00e9"}) {
    control<QLineEdit>(dialog(), "Text1").setText(QString::fromUtf8(path));
    messageBox_.expect("You must select a valid directory.", MessageBoxStyle::Exclamation);
    press(dialog(), "OKButton");
    EXPECT_TRUE(messageBox_.isThrough()) << path;
    EXPECT_TRUE(dialog().isVisible());
  }
}

TEST_P(ExistingArchiveDialogTest, TakesAPathOfFourCharacters) {
  disk_.givenAFolder(u8"/\u00e9t\u00e9");
  open();
  type("/\u00e9t\u00e9");
  expectQuestionAbout("/\u00e9t\u00e9");
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
}

TEST_P(ExistingArchiveDialogTest, OpensTheHighlightedFolderBeforeItAsks) {
  open();
  clickOn(control<FolderList>(dialog(), "Dir1"), "May");
  EXPECT_EQ(openFolderOf(dialog()), "/opt/quorrix/Archives") << "a click only highlights";
  expectQuestionAbout("/opt/quorrix/Archives/May", [this] {
    EXPECT_EQ(shownInBox(dialog()), "/opt/quorrix/Archives/May");
    EXPECT_EQ(filesOf(dialog()), (Texts{"nodes.dat", "notes.dat"}));
  });
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
}

TEST_P(ExistingArchiveDialogTest, OpensTheFolderAboveWhenThatIsHighlighted) {
  open();
  QTest::keyClick(&control<FolderList>(dialog(), "Dir1"), Qt::Key_Up);
  expectQuestionAbout("/opt/quorrix");
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
}

TEST_P(ExistingArchiveDialogTest, RefusesTheHighlightedRoot) {
  open();
  clickOn(control<FolderList>(dialog(), "Dir1"), "/");
  messageBox_.expect("You must select a valid directory.", MessageBoxStyle::Exclamation);
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
  EXPECT_TRUE(dialog().isVisible());
}

TEST_P(ExistingArchiveDialogTest, AsksNothingWhenTheHighlightedFolderDoesNotOpen) {
  open();
  disk_.failListing("/opt/quorrix/Archives/May", 75);
  clickOn(control<FolderList>(dialog(), "Dir1"), "May");
  messageBox_.expect("Path/file access error.", MessageBoxStyle::Critical);
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
  EXPECT_TRUE(dialog().isVisible());
  expectTheFolderOfArchives();
}

TEST_P(ExistingArchiveDialogTest, MovesThroughTheFoldersByArrowKeysWithoutOpeningThem) {
  open();
  const auto before = files_.calls().size();
  auto& folders = control<FolderList>(dialog(), "Dir1");
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End}) {
    QTest::keyClick(&folders, key);
  }
  EXPECT_EQ(files_.calls().size(), before);
  expectTheFolderOfArchives();
}

TEST_P(ExistingArchiveDialogTest, OpensATypedPathOnEnterAndPressesTheButtonOnTheNext) {
  open();
  type("/opt/quorrix/Archives/May/");
  pressEnterInTheBox();
  EXPECT_EQ(openFolderOf(dialog()), "/opt/quorrix/Archives/May");
  EXPECT_EQ(shownInBox(dialog()), "/opt/quorrix/Archives/May");
  EXPECT_EQ(filesOf(dialog()), (Texts{"nodes.dat", "notes.dat"}));
  EXPECT_EQ(messageBox_.shown(), 0);
  expectQuestionAbout("/opt/quorrix/Archives/May");
  pressEnterInTheBox();
  EXPECT_TRUE(messageBox_.isThrough());
}

TEST_P(ExistingArchiveDialogTest, OpensATypedPathWhenTheBoxIsLeft) {
  open();
  type("/media/stick");
  control<FolderList>(dialog(), "Dir1").setFocus();
  QCoreApplication::processEvents();
  EXPECT_EQ(openFolderOf(dialog()), "/media/stick");
  EXPECT_EQ(filesOf(dialog()), Texts{"photo"});
  EXPECT_EQ(driveShownIn(dialog()), "/media/stick");
}

TEST_P(ExistingArchiveDialogTest, KeepsATypedPathWhileTheUserIsInAnotherWindow) {
  open();
  type("/media/stick");
  for (const Qt::FocusReason reason : {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason}) {
    QFocusEvent leave(QEvent::FocusOut, reason);
    QApplication::sendEvent(&control<QLineEdit>(dialog(), "Text1"), &leave);
    QCoreApplication::processEvents();
    EXPECT_EQ(openFolderOf(dialog()), "/opt/quorrix/Archives");
    EXPECT_EQ(shownInBox(dialog()), "/media/stick");
  }
}

TEST_P(ExistingArchiveDialogTest, BeginsATypedNameAtTheOpenFolder) {
  open();
  type("June");
  pressEnterInTheBox();
  EXPECT_EQ(shownInBox(dialog()), "/opt/quorrix/Archives/June");
  type("../May ");
  pressEnterInTheBox();
  EXPECT_EQ(shownInBox(dialog()), "/opt/quorrix/Archives/May");
}

TEST_P(ExistingArchiveDialogTest, TellsOnceOfATypedPathThatCannotBeOpened) {
  open();
  type("/opt/quorrix/Archives/T1");
  // A mouse press on OK takes the focus from the box, and its release then presses OK.
  messageBox_.expect("Path not found.", MessageBoxStyle::Critical, MessageBoxButton::Ok,
                     [this] { press(dialog(), "OKButton"); });
  control<FolderList>(dialog(), "Dir1").setFocus();
  QCoreApplication::processEvents();
  EXPECT_TRUE(messageBox_.isThrough());
  expectTheFolderOfArchives();
}

TEST_P(ExistingArchiveDialogTest, TakesWhatWasTypedAfterAFolderWasHighlighted) {
  open();
  clickOn(control<FolderList>(dialog(), "Dir1"), "May");
  type("/opt/quorrix/Archives");
  expectQuestionAbout("/opt/quorrix/Archives");
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
}

TEST_P(ExistingArchiveDialogTest, OpensATypedNameOfThreeLetters) {
  open();
  type("May");
  pressEnterInTheBox();
  EXPECT_EQ(shownInBox(dialog()), "/opt/quorrix/Archives/May");
}

TEST_P(ExistingArchiveDialogTest, OpensATypedPathBeforeItAsks) {
  open();
  // Assistive technology sets the text like this, without a key press.
  control<QLineEdit>(dialog(), "Text1").setText(QStringLiteral("/opt/quorrix/Archives/June"));
  expectQuestionAbout("/opt/quorrix/Archives/June",
                      [this] { EXPECT_EQ(openFolderOf(dialog()), "/opt/quorrix/Archives/June"); });
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
}

TEST_P(ExistingArchiveDialogTest, TakesATypedPathBackThatCannotBeOpened) {
  open();
  type("/opt/quorrix/Archives/T1");
  messageBox_.expect("Path not found.", MessageBoxStyle::Critical);
  pressEnterInTheBox();
  EXPECT_TRUE(messageBox_.isThrough());
  expectTheFolderOfArchives();
  type("/opt/quorrix/Archives/T1");
  messageBox_.expect("Path not found.", MessageBoxStyle::Critical);
  press(dialog(), "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
  expectTheFolderOfArchives();
  EXPECT_TRUE(dialog().isVisible());
}

TEST_P(ExistingArchiveDialogTest, DoesNotTellOfATypedPathWhenItIsCancelled) {
  open();
  type("/opt/quorrix/Archives/T1");
  control<QAbstractButton>(dialog(), "CancelButton").setFocus();
  QCoreApplication::processEvents();
  press(dialog(), "CancelButton");
  QCoreApplication::processEvents();
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(messageBox_.shown(), 0);
}

TEST_P(ExistingArchiveDialogTest, ClosesOnCancelAndEscape) {
  open();
  press(dialog(), "CancelButton");
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(dialog().result(), QDialog::Rejected);
  open();
  QTest::keyClick(&control<FolderList>(dialog(), "Dir1"), Qt::Key_Escape);
  EXPECT_FALSE(dialog().isVisible());
}

TEST_P(ExistingArchiveDialogTest, OpensAFolderByEnterAndPressesNoButton) {
  open();
  auto& folders = control<FolderList>(dialog(), "Dir1");
  QTest::keyClick(&folders, Qt::Key_Down);
  QTest::keyClick(&folders, Qt::Key_Return);
  EXPECT_EQ(openFolderOf(dialog()), "/opt/quorrix/Archives/June");
  EXPECT_EQ(messageBox_.shown(), 0);
}

TEST_P(ExistingArchiveDialogTest, IsWalkedThroughFromTopToBottom) {
  open();
  Texts order{"Dir1", "File1", "Text1", "OKButton", "CancelButton"};
  if (dialog().findChild<QAbstractButton*>(QStringLiteral("NewButton")) != nullptr) {
    order.push_back("NewButton");
  }
  order.push_back("Drive1");
  EXPECT_EQ(tabThrough(dialog()), order);
  expectEveryControlIsNamed(dialog());
}

INSTANTIATE_TEST_SUITE_P(Of, ExistingArchiveDialogTest, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& kind) {
                           return std::string(kind.param.name);
                         });

}  // namespace
}  // namespace quorrix
