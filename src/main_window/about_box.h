// About Quorrix: the program's icon, name and version, and the library that it is made
// with.
#pragma once

#include <QDialog>

#include "shell/program_version.h"

class QLabel;

namespace quorrix {

// "Version 1.0.3" for major 1, minor 0, revision 3.
[[nodiscard]] QString versionText(const ProgramVersion& version);

// Names Qt's version and licence.
[[nodiscard]] QString librariesText(const QString& qtVersion);

class AboutBox final : public QDialog {
  Q_OBJECT

 public:
  explicit AboutBox(QWidget& mainWindow);

  // Call before the box is shown. Throws kFileNotFound if the icon is missing.
  void Form_Load();

 private:
  void cmdOK_Click();

  QWidget& mainWindow_;
  QLabel* picIcon_;
  QLabel* lblTitle_;
  QLabel* lblVersion_;
  QLabel* lblLibraries_;
};

}  // namespace quorrix
