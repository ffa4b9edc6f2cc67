// User ID, Password: one of each for the selected site, kept in info.dat and
// shown in clear text.
#pragma once

#include "records/record_dialog.h"
#include "records/user_id_password_file.h"

class QLineEdit;

namespace quorrix {

class UIDDialog final : public RecordDialog {
  Q_OBJECT

 public:
  explicit UIDDialog(const RecordDialogParts& parts);

  // Call before the dialog is shown. The dialog is shown even if this fails.
  void Form_Load();

 private:
  // Shows what is stored for the site. Returns false if nothing is stored.
  bool readStored();
  void OKButton_Click();
  void CancelButton_Click();
  void DeleteButton_Click();

  UserIDPasswordFile records_;
  QLineEdit* Text1_;  // user ID
  QLineEdit* Text2_;  // password
  QPushButton* DeleteButton_;
  bool isRead_ = false;  // the file was read, so the boxes show its contents
};

}  // namespace quorrix
