// A main window and a disk in memory with a few archives on it, for the tests of the
// archive dialogs.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <string>
#include <vector>

#include "archives/archive_folder_dialog.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"
#include "support/qt_printers.h"
#include "support/scripted_message_box.h"
#include "support/slashes.h"

namespace quorrix::test {

using Texts = std::vector<std::string>;

class PaintedWindow final : public QWidget {
 public:
  int paints = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override { ++paints; }
};

class ArchiveStage : public ::testing::Test {
 protected:
  ArchiveStage() {
    disk_.givenAFile("/opt/quorrix/Archives/readme.txt", "");
    disk_.givenAFile("/opt/quorrix/Archives/May/nodes.dat", "");
    disk_.givenAFile("/opt/quorrix/Archives/May/notes.dat", "");
    disk_.givenAFolder("/opt/quorrix/Archives/June");
    disk_.givenAFolder("/opt/quorrix/Data");
    disk_.givenAFile("/media/stick/photo", "");
    disk_.givenAFolder("/media/stick/Old");
    disk_.givenVolumes({"/", "/media/empty", "/media/stick"});
    disk_.givenAFolder("/media/empty");
    disk_.failListing("/media/empty", 71);
    mainWindow_.setGeometry(100, 50, 700, 500);
    mainWindow_.show();
  }

  ArchiveDialogParts parts() {
    return {.files = files_,
            .messageBox = messageBox_,
            .mainWindow = mainWindow_,
            .archives = "/opt/quorrix/Archives"};
  }

  template <typename Widget>
  static Widget& control(QWidget& dialog, const char* name) {
    return *dialog.findChild<Widget*>(QString::fromLatin1(name));
  }

  static void press(QWidget& dialog, const char* button) {
    control<QAbstractButton>(dialog, button).click();
  }

  static std::string shownInBox(QWidget& dialog) {
    return withSlashes(control<QLineEdit>(dialog, "Text1").text().toStdString());
  }

  static std::string openFolderOf(QWidget& dialog) {
    return withSlashes(control<FolderList>(dialog, "Dir1").path().string());
  }

  static Texts rowsOf(const QListWidget& list) {
    Texts rows;
    for (int row = 0; row < list.count(); ++row)
      rows.push_back(withSlashes(list.item(row)->text().toStdString()));
    return rows;
  }

  static Texts filesOf(QWidget& dialog) { return rowsOf(control<FileList>(dialog, "File1")); }

  static QPoint placeOf(const QListWidget& list, const char* text) {
    const auto found = list.findItems(QString::fromUtf8(text), Qt::MatchExactly);
    EXPECT_EQ(found.size(), 1) << text;
    return found.isEmpty() ? QPoint() : list.visualItemRect(found.first()).center();
  }

  static void clickOn(QListWidget& list, const char* text) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(list, text));
  }

  static void doubleClickOn(QListWidget& list, const char* text) {
    const QPoint place = placeOf(list, text);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  }

  static void openIn(QWidget& dialog, const char* folder) {
    doubleClickOn(control<FolderList>(dialog, "Dir1"), folder);
  }

  // Chooses the drive with the keyboard, which does not open the list.
  static void chooseDrive(QWidget& dialog, const char* drive) {
    auto& drives = control<DriveList>(dialog, "Drive1");
    const int row = drives.findText(QString::fromUtf8(drive));
    ASSERT_GE(row, 0) << drive;
    while (drives.currentIndex() < row) QTest::keyClick(&drives, Qt::Key_Down);
    while (drives.currentIndex() > row) QTest::keyClick(&drives, Qt::Key_Up);
  }

  static std::string driveShownIn(QWidget& dialog) {
    return control<DriveList>(dialog, "Drive1").currentText().toStdString();
  }

  // The controls that Tab reaches, from the one that has the focus until it comes back to
  // it.
  static Texts tabThrough(QWidget& dialog) {
    dialog.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Texts names;
    const QWidget* const first = dialog.focusWidget();
    do {
      names.push_back(dialog.focusWidget()->objectName().toStdString());
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    } while (dialog.focusWidget() != first && names.size() < 20);
    return names;
  }

  static void expectEveryControlIsNamed(const QWidget& dialog) {
    for (const auto* const control : dialog.findChildren<QWidget*>()) {
      if (control->focusPolicy() == Qt::NoFocus || !control->isVisible()) continue;
      if (control->parentWidget() != &dialog) continue;
      EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
    }
  }

  MemoryFileSystem disk_;
  FaultyFileSystem files_{disk_};
  ScriptedMessageBox messageBox_;
  PaintedWindow mainWindow_;
};

}  // namespace quorrix::test
