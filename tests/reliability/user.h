// The program, and a user who reaches every command through its menus and dialogs and
// answers OK to every question. The user closes each dialog before a function returns.
#pragma once

#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "archives/program_on_disk.h"

namespace quorrix::test {

template <typename Control>
Control& control(QWidget& window, const char* name) {
  auto* const found = window.findChild<Control*>(QString::fromLatin1(name));
  if (found == nullptr) throw std::logic_error(std::string("no control ") + name);
  return *found;
}

class User {
 public:
  using InDialog = std::function<void(QDialog&)>;

  User(FileSystem& files, const Path& programFolder)
      : programFolder_(programFolder), program_(files, programFolder) {}

  [[nodiscard]] bool start() { return program_.start(); }

  [[nodiscard]] const Path& programFolder() const { return programFolder_; }
  [[nodiscard]] MainForm& form() { return program_.form(); }
  [[nodiscard]] FakeClock& clock() { return program_.clock(); }
  [[nodiscard]] AgreeingMessageBox& messageBox() { return program_.messageBox(); }

  // Selects the site as a click does.
  void select(std::string_view key) {
    form().tree().select(form().tree().at(key));
    form().TreeView_MouseUp(mouse_button::kLeft, 0, 0, 0);
  }

  // Chooses an entry of the menu bar or of the popup menu. `inDialog` runs when the
  // dialog that the entry opens is on the screen; it does not run if none opens.
  void choose(const char* entry, const InDialog& inDialog = {}) {
    inNextDialog(inDialog, [this, entry] { control<QAction>(form(), entry).trigger(); });
  }

  // Opens the popup menu of the selected site and chooses an entry.
  void popUp(const char* entry, const InDialog& inDialog) {
    form().TreeView_MouseUp(mouse_button::kRight, 0, 0, 0);
    control<QMenu>(form(), "POMenu").close();
    choose(entry, inDialog);
  }

  static void press(QWidget& window, const char* button, const InDialog& inDialog = {}) {
    inNextDialog(inDialog, [&] { control<QPushButton>(window, button).click(); });
  }

  static void type(QWidget& window, const char* box, const std::string& text) {
    if (auto* const line = window.findChild<QLineEdit*>(QString::fromLatin1(box))) {
      line->setText(QString::fromStdString(text));
    } else {
      control<QTextEdit>(window, box).setPlainText(QString::fromStdString(text));
    }
  }

  // Tracks for one pass, in which the browser is contacting the address.
  void visit(const std::string& address) {
    program_.windows().show({browserWindow("A page - Netscape", address, "Connect: contacting")});
    program_.events().atPump(program_.events().pumps() + 1, [this] { choose("FileStopTrack"); });
    choose("FileStartTrack");
    QCoreApplication::processEvents();
    program_.windows().show({});
  }

 private:
  // The timer fires in the event loop of the dialog that `action` opens.
  static void inNextDialog(const InDialog& inDialog, const std::function<void()>& action) {
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&inDialog] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      if (inDialog) inDialog(*dialog);
      if (dialog->isVisible()) dialog->reject();
    });
    timer.start(0);
    action();
  }

  Path programFolder_;
  ProgramOnDisk program_;
};

}  // namespace quorrix::test
