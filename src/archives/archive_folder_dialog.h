// What the dialogs of the archives share: the choice of a folder by a drive list and a
// folder list, a box below them, and the buttons OK and Cancel. For the three on a
// folder that is there already, also a list of its files; their box shows the path.
#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <string_view>

#include "archives/drive_list.h"
#include "archives/file_list.h"
#include "archives/folder_list.h"
#include "platform/file_system.h"
#include "platform/message_box.h"
#include "shell/failure_messages.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace quorrix {

// All must outlive the dialog.
struct ArchiveDialogParts {
  FileSystem& files;
  MessageBox& messageBox;
  QWidget& mainWindow;
  Path archives;  // the folder "Archives" beside the program, on which the dialogs open
};

class ArchiveFolderDialog : public QDialog {
  Q_OBJECT

 protected:
  struct Texts {
    const char* name;
    QString caption;
    QString prompt;
  };

  ArchiveFolderDialog(const ArchiveDialogParts& parts, QWidget& owner, const Texts& texts);

  [[nodiscard]] const ArchiveDialogParts& parts() const { return parts_; }
  [[nodiscard]] DriveList& Drive1() const { return *Drive1_; }
  [[nodiscard]] FolderList& Dir1() const { return *Dir1_; }
  [[nodiscard]] QLineEdit& Text1() const { return *Text1_; }
  [[nodiscard]] QPushButton& OKButton() const { return *OKButton_; }
  [[nodiscard]] QPushButton& CancelButton() const { return *CancelButton_; }

  // The operation's folder, in a message with `before` and `after` it.
  [[nodiscard]] std::string aboutFolder(std::string_view before, std::string_view after) const;

  // Asks with OK and Cancel, Cancel being the default.
  [[nodiscard]] bool isConfirmed(std::string_view question,
                                 MessageBoxStyle style = MessageBoxStyle::ConfirmQuestion) const;

  virtual void OKButton_Click() = 0;

  // Lays out the controls that every dialog has, with `beside`, if any, next to the
  // folders, the box under `boxLabel`, and `furtherButton`, if any, after Cancel.
  void layOut(QWidget* beside, const QString& boxLabel, QPushButton* furtherButton = nullptr);

 private:
  void Drive1_Change();
  void CancelButton_Click();

  ArchiveDialogParts parts_;
  QLabel* prompt_;
  DriveList* Drive1_;
  FolderList* Dir1_;
  QLineEdit* Text1_;
  QPushButton* OKButton_;
  QPushButton* CancelButton_;
};

// The three that work on a folder that is there, and list its files.
class ExistingArchiveDialog : public ArchiveFolderDialog {
  Q_OBJECT

 protected:
  ExistingArchiveDialog(const ArchiveDialogParts& parts, const Texts& texts);

  [[nodiscard]] FileList& File1() const { return *File1_; }

  // Places the dialog and opens the folder of archives, while the main window has the
  // hourglass. After a failure the user is told, and the dialog is shown with what was set
  // before the failure.
  void load(FailureFamily family);

  // Hides the dialog, repaints the main window where it was, and does the work, all
  // under the dialog's hourglass.
  void giveWayTo(const std::function<void()>& work);

  // When the operation fails, hides the dialog and unloads it once that was told.
  void runOrUnload(FailureFamily family, const std::function<void()>& operation);

  // Shows `folder` in the box.
  void showInBox(const Path& folder);

  // Opens the folder whose path was typed into the box, or else the highlighted one, so
  // that the operation works on what the dialog shows. False, and told, when it cannot be
  // opened or is a root.
  [[nodiscard]] bool chooseFolder();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Dir1_Change();
  void Text1_LostFocus();
  [[nodiscard]] bool isFolderChosen() const;
  [[nodiscard]] bool isPathTyped() const;
  bool openTypedPath();

  FileList* File1_;
  bool isOpeningTypedPath_ = false;
};

}  // namespace quorrix
