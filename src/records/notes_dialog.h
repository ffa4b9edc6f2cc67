// Notes: one free text for the selected site, kept in notes.dat.
#pragma once

#include "records/notes_file.h"
#include "records/record_dialog.h"

namespace quorrix {

class MultiLineBox;

class NotesDialog final : public RecordDialog {
  Q_OBJECT

 public:
  explicit NotesDialog(const RecordDialogParts& parts);

  // Call before the dialog is shown. The dialog is shown even if this fails.
  void Form_Load();

 private:
  // Shows what is stored for the site. Returns false if nothing is stored.
  bool readStored();
  void OKButton_Click();
  void CancelButton_Click();
  void DeleteButton_Click();

  NotesFile notes_;
  MultiLineBox* Text1_;
  QPushButton* DeleteButton_;
  bool isRead_ = false;  // the file was read, so the box shows its contents
};

}  // namespace quorrix
