// The base classes of the archive dialogs. Every dialog has a drive list and a folder
// list to choose a folder, a box below them, and the buttons OK and Cancel. The three
// dialogs that work on an existing folder also list its files, and their box shows its
// path.
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
  Path archives;  // the folder "Archives" next to the program, where the dialogs open
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

  // A message with the path of the open folder between `before` and `after`.
  [[nodiscard]] std::string aboutFolder(std::string_view before, std::string_view after) const;

  // Asks with OK and Cancel; Cancel is the default.
  [[nodiscard]] bool isConfirmed(std::string_view question,
                                 MessageBoxStyle style = MessageBoxStyle::ConfirmQuestion) const;

  virtual void OKButton_Click() = 0;

  // Lays out the controls that every dialog has. `beside` goes next to the folders and
  // `furtherButton` after Cancel; either may be null. The box gets the label `boxLabel`.
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

// The base of the three dialogs that work on an existing folder and list its files.
class ExistingArchiveDialog : public ArchiveFolderDialog {
  Q_OBJECT

 protected:
  ExistingArchiveDialog(const ArchiveDialogParts& parts, const Texts& texts);

  [[nodiscard]] FileList& File1() const { return *File1_; }

  // Centres the dialog and opens the folder of archives, while the main window shows the
  // hourglass. A failure is reported to the user; the dialog is then shown with whatever
  // was set before it.
  void load(FailureFamily family);

  // Hides the dialog, repaints the main window, and does the work, all under the dialog's
  // hourglass.
  void giveWayTo(const std::function<void()>& work);

  // Runs the operation. If it fails, reports the failure and then closes the dialog.
  void runOrUnload(FailureFamily family, const std::function<void()>& operation);

  // Shows `folder` in the box.
  void showInBox(const Path& folder);

  // Opens the folder whose path was typed into the box, or otherwise the highlighted one,
  // so that the operation works on what the dialog shows. Returns false, and tells the
  // user, if the folder cannot be opened or its path is shorter than four characters, as
  // that of a root is.
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
