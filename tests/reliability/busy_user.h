// A user of the real main window, on the real disk, who takes one step after the other as
// fast as the program can: visits, notes, passwords, purchases, deletions, archives.
#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QTextEdit>
#include <functional>
#include <string>
#include <vector>

#include "archives/program_on_disk.h"
#include "reliability/kept_records.h"

namespace quorrix::test {

class BusyUser : public ProgramOnDisk {
 public:
  BusyUser(FileSystem& files, const Path& programFolder)
      : ProgramOnDisk(files, programFolder), archives_(programFolder / "Archives") {}

  // Returns the messages that report failures.
  std::vector<std::string> take(const UserStep& step) {
    messageBox_.sentences.clear();
    switch (step.kind) {
      case UserStep::Kind::Visit:
        visit(step.site);
        break;
      case UserStep::Kind::Notes:
        select(step.site);
        fillIn([&](QDialog& dialog) { text<QTextEdit>(dialog, "Text1", step.text); });
        form_.PopUpNotes_Click();
        break;
      case UserStep::Kind::Password:
        select(step.site);
        fillIn([&](QDialog& dialog) {
          text<QLineEdit>(dialog, "Text1", step.text);
          text<QLineEdit>(dialog, "Text2", step.text + "!");
        });
        form_.PopUpPasswords_Click();
        break;
      case UserStep::Kind::Purchase:
        select(step.site);
        fillIn([&](QDialog& dialog) {
          text<QLineEdit>(dialog, "Text1", step.text);
          text<QLineEdit>(dialog, "Text4", "1");
        });
        form_.PopUpNewPurchase_Click();
        break;
      case UserStep::Kind::Delete:
        select(step.site);
        form_.FileDelete_Click();
        break;
      case UserStep::Kind::Archive:
        std::filesystem::create_directory(archives_ / step.text);
        return run("FileArchive", archives_ / step.text);
    }
    return messageBox_.sentences;
  }

 private:
  void visit(const std::string& address) {
    windows_.show({browserWindow("A page - Netscape", "http://" + address, "Connect: host")});
    events_.atEachPause([this](int) { form_.FileStopTrack_Click(); });
    form_.FileStartTrack_Click();
    QCoreApplication::processEvents();
  }

  void select(const std::string& site) {
    form_.tree().select(site.empty() ? form_.tree().root() : form_.tree().at(site));
  }

  // Runs `fill` in the dialog that opens next, and presses OK.
  void fillIn(const std::function<void(QDialog&)>& fill) {
    QTimer::singleShot(0, &form_, [this, fill] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return messageBox_.sentences.push_back("no dialog opened");
      fill(*dialog);
      dialog->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
      if (dialog->isVisible()) dialog->reject();
    });
  }

  template <typename Box>
  static void text(QDialog& dialog, const char* box, const std::string& text) {
    enter(*dialog.findChild<Box*>(QString::fromLatin1(box)), QString::fromStdString(text));
  }
  static void enter(QLineEdit& box, const QString& text) { box.setText(text); }
  static void enter(QTextEdit& box, const QString& text) { box.setPlainText(text); }

  Path archives_;
};

}  // namespace quorrix::test
