// The program on the real disk, and a user who chooses an archive command, opens a folder
// and answers OK to every question.
#pragma once

#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "archives/folder_list.h"
#include "main_window/main_form.h"
#include "support/agreeing_message_box.h"
#include "support/code_pages.h"
#include "support/fake_clock.h"
#include "support/fake_window_system.h"
#include "support/form_event_pump.h"
#include "support/recording_command_shell.h"

namespace quorrix::test {

class ProgramOnDisk {
 public:
  ProgramOnDisk(FileSystem& files, const Path& programFolder)
      : form_({.paths = AppPaths(programFolder),
               .codePage = westernCodePage(),
               .locale = QLocale(QLocale::English, QLocale::UnitedStates),
               .files = files,
               .clock = clock_,
               .events = events_,
               .messageBox = messageBox_,
               .windows = windows_,
               .commandShell = commandShell_}) {}

  // Whether the start-up succeeded.
  [[nodiscard]] bool start() { return form_.Form_Load(); }

  // `atOK` runs after the folder is chosen and before OK is pressed. Returns the messages
  // that report failures.
  std::vector<std::string> run(
      const char* command, const Path& folder, const std::function<void()>& atOK = [] {}) {
    messageBox_.sentences.clear();
    QTimer::singleShot(0, &form_, [&] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) {
        messageBox_.sentences.emplace_back("no dialog opened");
        return;
      }
      dialog->findChild<FolderList*>(QStringLiteral("Dir1"))->setPath(folder);
      atOK();
      dialog->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
      if (dialog->isVisible()) dialog->reject();
    });
    form_.findChild<QAction*>(QString::fromLatin1(command))->trigger();
    return messageBox_.sentences;
  }

  [[nodiscard]] bool shows(std::string_view address) {
    return form_.tree().find(address) != kNoNode;
  }

  [[nodiscard]] std::string firstPanel() const {
    return form_.findChild<TwoPanelStatusBar*>(QStringLiteral("StatusBar"))
        ->panelText(1)
        .toStdString();
  }

  [[nodiscard]] MainForm& form() { return form_; }
  [[nodiscard]] FakeClock& clock() { return clock_; }
  [[nodiscard]] FormEventPump& events() { return events_; }
  [[nodiscard]] AgreeingMessageBox& messageBox() { return messageBox_; }
  [[nodiscard]] FakeWindowSystem& windows() { return windows_; }

 private:
  FakeClock clock_;
  FormEventPump events_{clock_};
  AgreeingMessageBox messageBox_;
  FakeWindowSystem windows_;
  RecordingCommandShell commandShell_;
  MainForm form_;
};

}  // namespace quorrix::test
