// Tries every failure number at every file operation of every record dialog. Expects the
// right message, the default pointer, a dialog that is still open, and no change to any
// record but the one in question.
#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "records/new_purchase_dialog.h"
#include "records/notes_dialog.h"
#include "records/purchases_dialog.h"
#include "records/record_dialog_stage.h"
#include "records/user_id_password_dialog.h"
#include "shell/pointer.h"
#include "support/agreeing_message_box.h"

namespace quorrix {
namespace {

struct FailureReason {
  int number;
  const char* reason;
};

constexpr FailureReason kReasons[] = {
    {7, "Out of memory."},        {28, "Out of memory."},        {31001, "Out of memory."},
    {53, "Unable to find file."}, {57, "Device I/O error."},     {67, "Too many files open."},
    {68, "Device not ready."},    {71, "Disk not ready."},       {75, "Path/file access error."},
    {76, "Path not found."},      {321, "Invalid file format."}, {61, "Unknown error."},
    {6, "Unknown error."},        {51, "Unknown error."},
};

class BrokenClock final : public Clock {
 public:
  LocalDateTime now() override { throw Failure(7); }
  std::chrono::milliseconds elapsed() override { return {}; }
};

class RecordDialogFailuresTest : public test::RecordDialogStage {
 protected:
  using Step = std::function<void(QDialog&)>;

  RecordDialogParts agreeingParts() { return parts(clock_, agreeing_); }

  // In each file, a record of another site before and after the site's own.
  void givenRecords() {
    const auto around = [](const std::string& other, const std::string& own) {
      return other + own + other;
    };
    memory_.givenAFile(
        paths_.currentURLNotesFile,
        around(test::notesRecord("a.b.c", "other"), test::notesRecord("one.two.three/a", "roses")));
    memory_.givenAFile(paths_.currentUserIDPasswordFile,
                       around(test::userIDPasswordRecord("a.b.c", "p", "u"),
                              test::userIDPasswordRecord("one.two.three/a", "tulip7", "anna")));
    memory_.givenAFile(
        paths_.currentPurchasesFile,
        around(test::purchaseRecord("a.b.c"), test::purchaseRecord("one.two.three/a")));
  }

  // Everything in the files except the middle record, which is the site's own, and the
  // records appended after the last one.
  std::string othersRecords() {
    std::string others;
    for (const auto& [path, length] : {std::pair{paths_.currentURLNotesFile, 1324},
                                       std::pair{paths_.currentUserIDPasswordFile, 360},
                                       std::pair{paths_.currentPurchasesFile, 542}}) {
      const auto record = static_cast<std::size_t>(length);
      const std::string& bytes = memory_.bytesOf(path);
      others += bytes.substr(0, record) + bytes.substr(2 * record, record);
    }
    return others;
  }

  // The window that shows the hourglass: the main window while it opens a dialog, then
  // the dialog.
  QWidget& workingWindow(QDialog& dialog) {
    return dialog.windowTitle().contains(QStringLiteral(" - ")) ? static_cast<QWidget&>(dialog)
                                                                : mainWindow_;
  }

  // Fails each file operation of `step` in turn, with each number, on a dialog that
  // `prepare` has set up. Expects the hourglass on the working window, and on neither
  // window while the message is open.
  template <typename Dialog>
  void expectEveryFailureTold(const std::string& family,
                              const std::function<void(Dialog&)>& prepare,
                              const std::function<void(Dialog&)>& step) {
    bool isOpen = false;  // after the step
    const auto run = [&](const std::function<void()>& arrange) {
      givenRecords();
      files_.reset();
      agreeing_.sentences.clear();
      Dialog dialog(agreeingParts());
      prepare(dialog);
      dialog.show();
      files_.reset();
      arrange();
      const auto expectNoHourglass = [&] {
        EXPECT_EQ(dialog.cursor().shape(), Qt::ArrowCursor);
        EXPECT_EQ(mainWindow_.cursor().shape(), Qt::ArrowCursor);
      };
      agreeing_.whileCritical = expectNoHourglass;
      QWidget& working = workingWindow(dialog);
      files_.onEveryCall([&working] { EXPECT_EQ(working.cursor().shape(), Qt::WaitCursor); });
      if (&working == &mainWindow_) {
        const Hourglass hourglass(mainWindow_);
        step(dialog);
      } else {
        step(dialog);
      }
      isOpen = dialog.isVisible();
      files_.onEveryCall({});
      agreeing_.whileCritical = {};
      expectNoHourglass();
      EXPECT_EQ(memory_.openFiles(), 0);
    };
    run([] {});
    EXPECT_EQ(agreeing_.sentences, std::vector<std::string>{});
    const std::vector<test::FileCall> calls = files_.calls();
    ASSERT_GT(calls.size(), 2U) << "the step works on a file";
    givenRecords();
    const std::string others = othersRecords();
    for (const auto& [number, reason] : kReasons) {
      for (int call = 1; call <= static_cast<int>(calls.size()); ++call) {
        SCOPED_TRACE(std::to_string(number) + " at call " + std::to_string(call));
        run([&, failing = number] { files_.failAtCall(call, failing); });
        if (isMissingFileToRead(calls, call, number)) {
          EXPECT_EQ(agreeing_.sentences, std::vector<std::string>{});
        } else {
          EXPECT_EQ(agreeing_.sentences, std::vector<std::string>{family + ' ' + reason});
          EXPECT_TRUE(isOpen);
        }
        EXPECT_EQ(othersRecords(), others);
      }
    }
  }

  // A missing file is created, so this is not a failure.
  static bool isMissingFileToRead(const std::vector<test::FileCall>& calls, int call, int number) {
    return number == 53 &&
           calls[static_cast<std::size_t>(call) - 1] == test::FileCall::OpenForReading;
  }

  test::AgreeingMessageBox agreeing_;
};

template <typename Dialog>
void load(Dialog& dialog) {
  dialog.Form_Load();
}

void pressOK(QDialog& dialog) {
  dialog.findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
}

void pressDelete(QDialog& dialog) {
  dialog.findChild<QPushButton*>(QStringLiteral("DeleteButton"))->click();
}

TEST_F(RecordDialogFailuresTest, OfOpeningNotes) {
  expectEveryFailureTold<NotesDialog>(
      "Unable to open Notes window.", [](NotesDialog&) {}, load<NotesDialog>);
}

TEST_F(RecordDialogFailuresTest, OfSavingNotes) {
  expectEveryFailureTold<NotesDialog>("Unable to save notes.", load<NotesDialog>, pressOK);
}

TEST_F(RecordDialogFailuresTest, OfDeletingNotes) {
  expectEveryFailureTold<NotesDialog>("Unable to delete notes.", load<NotesDialog>, pressDelete);
}

TEST_F(RecordDialogFailuresTest, OfOpeningUserIDAndPassword) {
  expectEveryFailureTold<UIDDialog>(
      "Unable to open User ID, Password window.", [](UIDDialog&) {}, load<UIDDialog>);
}

TEST_F(RecordDialogFailuresTest, OfSavingUserIDAndPassword) {
  expectEveryFailureTold<UIDDialog>("Unable to save user ID and password.", load<UIDDialog>,
                                    pressOK);
}

TEST_F(RecordDialogFailuresTest, OfDeletingUserIDAndPassword) {
  expectEveryFailureTold<UIDDialog>("Unable to delete user ID and password.", load<UIDDialog>,
                                    pressDelete);
}

TEST_F(RecordDialogFailuresTest, OfSavingAPurchase) {
  expectEveryFailureTold<NewPurchaseDialog>("Unable to save purchase information.",
                                            load<NewPurchaseDialog>, pressOK);
}

TEST_F(RecordDialogFailuresTest, OfDeletingAPurchase) {
  const auto openPurchase = [](NewPurchaseDialog& dialog) {
    dialog.Form_Load();
    dialog.getExistingRecord("1/2/26 3:04:05 PM");
  };
  expectEveryFailureTold<NewPurchaseDialog>("Unable to delete purchase information.", openPurchase,
                                            pressDelete);
}

TEST_F(RecordDialogFailuresTest, OfOpeningPurchases) {
  expectEveryFailureTold<PurchasesDialog>(
      "Unable to open Purchases window.", [](PurchasesDialog&) {},
      [](PurchasesDialog& dialog) {
        bool somePurchasesToLoad = false;
        dialog.Form_Load(somePurchasesToLoad);
      });
}

// While the main window opens a dialog, its pointer is the hourglass.
TEST_F(RecordDialogFailuresTest, OfOpeningGiveTheMainWindowItsPointerBack) {
  files_.failAlways(57);
  mainWindow_.setCursor(Qt::WaitCursor);
  Qt::CursorShape underTheMessage = Qt::WaitCursor;
  NotesDialog dialog(parts());
  messageBox_.expect("Unable to open Notes window. Device I/O error.", MessageBoxStyle::Critical,
                     MessageBoxButton::Ok, [&] { underTheMessage = mainWindow_.cursor().shape(); });
  dialog.Form_Load();
  EXPECT_EQ(underTheMessage, Qt::ArrowCursor);
}

TEST_F(RecordDialogFailuresTest, OfOpeningANewPurchaseAreThoseOfTheClock) {
  BrokenClock broken;
  NewPurchaseDialog dialog(parts(broken, messageBox_));
  messageBox_.expect("Unable to open New Purchase window. Out of memory.",
                     MessageBoxStyle::Critical);
  dialog.Form_Load();
  EXPECT_FALSE(dialog.findChild<QPushButton*>(QStringLiteral("DeleteButton"))->isEnabled());
}

// While the list opens a purchase, its pointer is the hourglass.
TEST_F(RecordDialogFailuresTest, OfOpeningAPurchaseGiveTheListItsPointerBack) {
  givenRecords();
  BrokenClock broken;
  PurchasesDialog dialog(parts(broken, messageBox_));
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  dialog.findChild<QListWidget*>(QStringLiteral("List1"))->setCurrentRow(0);
  Qt::CursorShape underTheMessage = Qt::WaitCursor;
  messageBox_.expect("Unable to open New Purchase window. Out of memory.",
                     MessageBoxStyle::Critical, MessageBoxButton::Ok,
                     [&] { underTheMessage = dialog.cursor().shape(); });
  QTimer::singleShot(0, &dialog, [] {
    auto* const opened = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(opened, nullptr);
    opened->reject();
  });
  dialog.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
  EXPECT_EQ(underTheMessage, Qt::ArrowCursor);
}

TEST_F(RecordDialogFailuresTest, OfChoosingAPurchaseLeaveTheListOpen) {
  givenRecords();
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  messageBox_.expect("You must select an item from the list.", MessageBoxStyle::Exclamation,
                     MessageBoxButton::Ok, [] { throw std::bad_alloc(); });
  EXPECT_NO_THROW(dialog.findChild<QPushButton*>(QStringLiteral("Command1"))->click());
}

// Opening the dialog needs nothing but the time of the purchase.
TEST_F(RecordDialogFailuresTest, OfOpeningANewPurchaseDoNotComeFromFiles) {
  files_.failAlways(57);
  NewPurchaseDialog dialog(agreeingParts());
  dialog.Form_Load();
  EXPECT_EQ(files_.calls().size(), 0U);
  EXPECT_EQ(agreeing_.sentences, std::vector<std::string>{});
}

TEST_F(RecordDialogFailuresTest, OfViewingAPurchaseAreNotTold) {
  givenRecords();
  PurchasesDialog dialog(agreeingParts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  dialog.findChild<QListWidget*>(QStringLiteral("List1"))->setCurrentRow(0);
  dialog.show();
  for (const auto& [number, reason] : kReasons) {
    for (int call = 1; call <= 3; ++call) {
      if (call == 1 && number == 53) continue;  // a missing file is created
      files_.reset();
      files_.failAtCall(call, number);
      dialog.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
      const bool isRead = files_.calls().back() == test::FileCall::ReadAt;
      // A block that cannot be read is tried again, record by record.
      EXPECT_EQ(static_cast<int>(files_.calls().size()), isRead ? call + 1 : call);
      EXPECT_EQ(dialog.cursor().shape(), Qt::ArrowCursor);
      EXPECT_TRUE(dialog.isVisible());
    }
  }
  EXPECT_EQ(agreeing_.sentences, std::vector<std::string>{});
}

}  // namespace
}  // namespace quorrix
