// A main window, a tree with a selected site, and the record files in memory, for the
// tests of the record dialogs.
#pragma once

#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include "records/record_dialog.h"
#include "records/record_file_stage.h"
#include "shell/plain_text.h"
#include "sitetree/site_file.h"
#include "support/code_pages.h"
#include "support/fake_clock.h"
#include "support/scripted_message_box.h"

namespace quorrix::test {

class RecordDialogStage : public RecordFileStage {
 protected:
  RecordDialogStage() {
    tree_.addRoot();
    tree_.select(tree_.addMissingLevels(addressLevels("one.two.three/a"), 'N'));
    clock_.set({.year = 2026, .month = 1, .day = 2, .hour = 15, .minute = 4, .second = 5});
  }

  RecordDialogParts parts() { return parts(clock_, messageBox_); }

  RecordDialogParts parts(Clock& clock, MessageBox& messageBox) {
    return {.codePage = *codePage_,
            .locale = locale_,
            .files = files_,
            .clock = clock,
            .messageBox = messageBox,
            .paths = paths_,
            .tree = tree_,
            .mainWindow = mainWindow_};
  }

  template <typename Widget>
  static Widget& control(QDialog& dialog, const char* name) {
    return *dialog.findChild<Widget*>(QString::fromLatin1(name));
  }

  static void press(QDialog& dialog, const char* button) {
    control<QPushButton>(dialog, button).click();
  }

  static bool isEnabled(QDialog& dialog, const char* name) {
    return control<QWidget>(dialog, name).isEnabled();
  }

  static std::string captionOf(QDialog& dialog) { return dialog.windowTitle().toStdString(); }

  const CodePage* codePage_ = &westernCodePage();
  QLocale locale_{QLocale::English, QLocale::UnitedStates};
  FakeClock clock_;
  ScriptedMessageBox messageBox_;
  SiteTree tree_;
  QWidget mainWindow_;
};

}  // namespace quorrix::test
