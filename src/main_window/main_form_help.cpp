// The commands of the Help menu.

#include <memory>

#include "main_window/about_box.h"
#include "main_window/help_file.h"
#include "main_window/help_window.h"
#include "main_window/main_form.h"
#include "shell/bring_up.h"
#include "shell/guarded.h"
#include "shell/plain_text.h"
#include "shell/pointer.h"

namespace quorrix {

// Reads the file each time, so that a user who restores it need not restart the program.
void MainForm::HelpHelp_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::Help, [this] {
    const Hourglass hourglass(*this);
    const std::string page = readHelpFile(parts_.files, parts_.paths.appPath("Quorrix.hlp"));
    showHelp(page);
  });
}

// A window that the user has closed is about to be deleted and is not used again.
void MainForm::showHelp(const std::string& page) {
  if (!helpWindow_.isNull() && helpWindow_->isVisible()) {
    helpWindow_->showPage(page);
  } else {
    auto window = std::make_unique<HelpWindow>(
        [this](const QUrl& address) { openAddress(address); },
        [this](const std::function<void()>& work) { runCommand(work); });
    window->showPage(page);
    helpWindow_ = window.release();
  }
  bringUp(*helpWindow_);
}

void MainForm::openAddress(const QUrl& address) {
  guarded(*this, parts_.messageBox, FailureFamily::LinkInBrowser, [this, &address] {
    parts_.commandShell.run(
        std::string(kStartCommand)
            .append(fromQString(parts_.codePage, address.toString(QUrl::FullyEncoded))));
  });
}

void MainForm::HelpAbout_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::About, [this] {
    const Hourglass hourglass(*this);
    AboutBox box(*this, parts_.codePage);
    box.Form_Load();
    box.exec();
  });
}

}  // namespace quorrix
