// The base of the record-file dialogs. Each operation works on the site that is selected
// in the tree at that moment.
#pragma once

#include <QDialog>
#include <QLocale>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "datafiles/working_folder.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/file_system.h"
#include "platform/message_box.h"
#include "shell/failure_messages.h"
#include "sitetree/site_tree.h"

class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;

namespace quorrix {

// All must outlive the dialog.
struct RecordDialogParts {
  const CodePage& codePage;
  const QLocale& locale;  // how the user writes dates
  FileSystem& files;
  Clock& clock;
  MessageBox& messageBox;
  const WorkingPaths& paths;
  const SiteTree& tree;
  QWidget& mainWindow;
};

class RecordDialog : public QDialog {
  Q_OBJECT

 protected:
  RecordDialog(const RecordDialogParts& parts, const char* name, const QString& caption);

  [[nodiscard]] const RecordDialogParts& parts() const { return parts_; }
  [[nodiscard]] std::string siteKey() const;

  // The functions of the same names, with the dialog's code page.
  [[nodiscard]] QString toQString(std::string_view text) const;
  [[nodiscard]] std::string fromQString(const QString& text) const;

  // Sets the window title to the plain caption, " - " and the site's key.
  void showSiteInCaption();

  // Runs the operation. If it fails, shows the family's sentence.
  void runGuarded(FailureFamily family, const std::function<void()>& operation);

  // The same for a load, during which the window that opens the dialog shows the
  // hourglass.
  void runLoadGuarded(FailureFamily family, const std::function<void()>& operation);

  // Asks with OK and Cancel; Cancel is the default.
  [[nodiscard]] bool isConfirmed(std::string_view question);

  [[nodiscard]] QLabel* makePrompt(const QString& text);
  [[nodiscard]] static QLayout* rowOfButtons(std::initializer_list<QPushButton*> buttons);

  // Resizes the dialog to `width` pixels, and to the height that its contents need at
  // that width.
  void resizeToWidth(int width);

  // A one-line box for a field of `fieldWidth` characters.
  [[nodiscard]] QLineEdit* makeLineBox(const char* name, const QString& label,
                                       std::size_t fieldWidth);

 private:
  RecordDialogParts parts_;
  QString caption_;
};

}  // namespace quorrix
