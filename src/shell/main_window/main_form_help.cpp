// The commands of the Help menu.

#include <memory>

#include "shell/bring_up.h"
#include "shell/guarded.h"
#include "shell/main_window/about_box.h"
#include "shell/main_window/help_file.h"
#include "shell/main_window/help_window.h"
#include "shell/main_window/main_form.h"
#include "shell/plain_text.h"
#include "shell/pointer.h"

namespace quorrix {

// The file is read each time, so that a user who has put it back need not start anew.
void MainForm::HelpHelp_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::Help, [this] {
    showHourglass(*this);
    const std::string page = readHelpFile(parts_.files, parts_.paths.appPath("Quorrix.hlp"));
    showHelp(page);
    showDefaultPointer(*this);
  });
}

// One that the user has closed is about to be deleted.
void MainForm::showHelp(const std::string& page) {
  if (!helpWindow_.isNull() && helpWindow_->isVisible()) {
    helpWindow_->showPage(page);
  } else {
    auto window =
        std::make_unique<HelpWindow>([this](const QUrl& address) { openAddress(address); });
    window->showPage(page);
    helpWindow_ = window.release();
  }
  bringUp(*helpWindow_);
}

void MainForm::openAddress(const QUrl& address) {
  guarded(*this, parts_.messageBox, FailureFamily::LinkInBrowser, [this, &address] {
    parts_.commandShell.run(
        std::string(kStartCommand).append(fromQString(address.toString(QUrl::FullyEncoded))));
  });
}

void MainForm::HelpAbout_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::About, [this] {
    showHourglass(*this);
    AboutBox box(*this);
    box.Form_Load();
    box.exec();
    showDefaultPointer(*this);
  });
}

}  // namespace quorrix
