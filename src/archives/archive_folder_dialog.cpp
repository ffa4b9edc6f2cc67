#include "archives/archive_folder_dialog.h"

#include <QFocusEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include "archives/shown_path.h"
#include "shell/centre_over.h"
#include "shell/controls.h"
#include "shell/guarded.h"
#include "shell/keep_in_front.h"
#include "shell/pointer.h"

namespace quorrix {
namespace {

constexpr int kShortestFolderPath = 4;  // a drive's root has three characters
constexpr QSize kSize{520, 400};        // pixels

QLabel* makeCaption(const QString& text, QWidget* buddy, QWidget* parent) {
  QLabel* const label = makeLabel("", text, parent);
  label->setBuddy(buddy);
  return label;
}

}  // namespace

ArchiveFolderDialog::ArchiveFolderDialog(const ArchiveDialogParts& parts, QWidget& owner,
                                         const Texts& texts)
    : QDialog(&owner),
      parts_(parts),
      // In reading order, which is also the tab order.
      prompt_(makeLabel("", texts.prompt, this)),
      Drive1_(named(new DriveList(parts.files, this), "Drive1", QStringLiteral("Drive"))),
      Dir1_(named(new FolderList(parts.files, parts.archives, this), "Dir1",
                  QStringLiteral("Folder"))),
      Text1_(new QLineEdit(this)),
      OKButton_(makeButton("OKButton", QStringLiteral("OK"), this)),
      CancelButton_(makeButton("CancelButton", QStringLiteral("Cancel"), this)) {
  setObjectName(QString::fromLatin1(texts.name));
  setWindowTitle(texts.caption);
  keepInFront(*this);
  prompt_->setWordWrap(true);
  Text1_->setObjectName(QStringLiteral("Text1"));
  OKButton_->setDefault(true);
  connect(OKButton_, &QPushButton::clicked, this, [this] {
    guarded(*this, parts_.messageBox, FailureFamily::OtherCommand, [this] { OKButton_Click(); });
  });
  connect(CancelButton_, &QPushButton::clicked, this, &ArchiveFolderDialog::CancelButton_Click);
  Drive1_->setDriveOf(parts_.archives);
  connect(Drive1_, &DriveList::changed, this, &ArchiveFolderDialog::Drive1_Change);
  connect(Dir1_, &FolderList::openFailed, this, [this](int number) {
    parts_.messageBox.show(failureMessage(FailureFamily::OpenFolder, number),
                           MessageBoxStyle::Critical);
  });
}

void ArchiveFolderDialog::Drive1_Change() {
  guarded(*this, parts_.messageBox, FailureFamily::ChooseDrive,
          [this] { Dir1_->setPathOrStay(Drive1_->drive()); });
}

std::string ArchiveFolderDialog::aboutFolder(std::string_view before,
                                             std::string_view after) const {
  return std::string(before).append(messageTextOfPath(Dir1_->path())).append(after);
}

bool ArchiveFolderDialog::isConfirmed(std::string_view question, MessageBoxStyle style) const {
  return parts_.messageBox.show(question, style) == MessageBoxButton::Ok;
}

void ArchiveFolderDialog::CancelButton_Click() { reject(); }

void ArchiveFolderDialog::layOut(QWidget* beside, const QString& boxLabel,
                                 QPushButton* furtherButton) {
  auto* const lists = new QGridLayout;
  lists->addWidget(makeCaption(QStringLiteral("Drive"), Drive1_, this), 0, 0);
  lists->addWidget(Drive1_, 1, 0);
  lists->addWidget(makeCaption(QStringLiteral("Folder"), Dir1_, this), 2, 0);
  lists->addWidget(Dir1_, 3, 0);
  lists->setColumnStretch(0, 1);
  if (beside != nullptr) {
    lists->addWidget(makeCaption(beside->accessibleName(), beside, this), 0, 1);
    lists->addWidget(beside, 1, 1, 3, 1);
    lists->setColumnStretch(1, 1);
  }

  Text1_->setAccessibleName(boxLabel);
  auto* const row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(OKButton_);
  row->addWidget(CancelButton_);
  if (furtherButton != nullptr) row->addWidget(furtherButton);

  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(prompt_);
  layout->addSpacing(layout->spacing());
  layout->addLayout(lists);
  layout->addWidget(makeCaption(boxLabel, Text1_, this));
  layout->addWidget(Text1_);
  layout->addSpacing(layout->spacing());
  layout->addLayout(row);
  resize(sizeHint().expandedTo(kSize));
}

ExistingArchiveDialog::ExistingArchiveDialog(const ArchiveDialogParts& parts, const Texts& texts)
    : ArchiveFolderDialog(parts, parts.mainWindow, texts),
      File1_(
          named(new FileList(parts.files, Dir1().path(), this), "File1", QStringLiteral("Files"))) {
  setTabOrder(&Dir1(), File1_);
  Dir1().onChange([this] { Dir1_Change(); });
  Text1().installEventFilter(this);
  // The user's last choice counts. Typing moves the highlight back to the open folder, so
  // that a folder highlighted earlier is not opened when the open folder's own path is
  // typed.
  connect(&Text1(), &QLineEdit::textEdited, &Dir1(), &FolderList::highlightOpenFolder);
}

void ExistingArchiveDialog::load(FailureFamily family) {
  guarded(parts().mainWindow, parts().messageBox, family, [this] {
    centreOver(*this, parts().mainWindow);
    Dir1().setFocus();
    Dir1().setPath(parts().archives);
    showInBox(parts().archives);
  });
}

void ExistingArchiveDialog::Dir1_Change() {
  File1_->setPath(Dir1().path());
  showInBox(Dir1().path());
}

void ExistingArchiveDialog::giveWayTo(const std::function<void()>& work) {
  const Hourglass hourglass(*this);
  hide();
  parts().mainWindow.repaint();
  work();
}

void ExistingArchiveDialog::runOrUnload(FailureFamily family,
                                        const std::function<void()>& operation) {
  if (!guarded(*this, parts().messageBox, family, operation)) reject();
}

void ExistingArchiveDialog::showInBox(const Path& folder) { Text1().setText(textOfPath(folder)); }

bool ExistingArchiveDialog::chooseFolder() {
  if (!isFolderChosen()) return false;
  const bool isOpen = isPathTyped() ? openTypedPath() : Dir1().openHighlighted();
  return isOpen && isFolderChosen();
}

// Enter in the box opens the typed path. Pressed again, it presses the default button.
bool ExistingArchiveDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &Text1()) return ArchiveFolderDialog::eventFilter(watched, event);
  if (event->type() == QEvent::FocusOut) {
    const auto reason = static_cast<QFocusEvent*>(event)->reason();
    const bool isLeft = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
    if (isLeft && isVisible()) {
      QMetaObject::invokeMethod(this, &ExistingArchiveDialog::Text1_LostFocus,
                                Qt::QueuedConnection);
    }
  } else if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && isPathTyped()) {
      guarded(*this, parts().messageBox, FailureFamily::OtherCommand, [this] { openTypedPath(); });
      return true;
    }
  }
  return ArchiveFolderDialog::eventFilter(watched, event);
}

// A user who is about to cancel gets no message about a missing folder.
void ExistingArchiveDialog::Text1_LostFocus() {
  if (!isVisible() || !isPathTyped() || CancelButton().hasFocus()) return;
  guarded(*this, parts().messageBox, FailureFamily::OtherCommand, [this] { openTypedPath(); });
}

// An empty box is not a typed path; OK refuses it.
bool ExistingArchiveDialog::isPathTyped() const {
  return Text1().text() != textOfPath(Dir1().path()) && !Text1().text().trimmed().isEmpty();
}

// This can be called again while the message about a path is open: the mouse press on OK
// that moved the focus away from the box still clicks OK when the button is released.
bool ExistingArchiveDialog::openTypedPath() {
  if (isOpeningTypedPath_) return false;
  const QScopedValueRollback opening(isOpeningTypedPath_, true);
  const bool isOpen = guarded(*this, parts().messageBox, FailureFamily::OpenFolder, [this] {
    Dir1().setPathOrStay(typedPath(Dir1().path(), Text1().text()));
  });
  showInBox(Dir1().path());
  if (isOpen) Drive1().setDriveOf(Dir1().path());
  return isOpen;
}

// Whether the path in the box has at least four characters, as that of a folder other
// than a root does. If not, tells the user.
bool ExistingArchiveDialog::isFolderChosen() const {
  if (Text1().text().size() >= kShortestFolderPath) return true;
  parts().messageBox.show("You must select a valid directory.", MessageBoxStyle::Exclamation);
  return false;
}

}  // namespace quorrix
