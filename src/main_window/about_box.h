// About Quorrix: the program's icon, name and version, the code page of the data files,
// and the library that the program is made with.
#pragma once

#include <QDialog>

#include "platform/code_page.h"
#include "shell/program_version.h"

class QLabel;

namespace quorrix {

// "Version 1.0.3" for major 1, minor 0, revision 3.
[[nodiscard]] QString versionText(const ProgramVersion& version);

// "Stores text in code page 1251 (Cyrillic)." for 1251.
[[nodiscard]] QString codePageText(const CodePage& codePage);

// Names Qt's version and licence.
[[nodiscard]] QString librariesText(const QString& qtVersion);

class AboutBox final : public QDialog {
  Q_OBJECT

 public:
  AboutBox(QWidget& mainWindow, const CodePage& codePage);

  // Call before the box is shown. Throws kFileNotFound if the icon is missing.
  void Form_Load();

 private:
  void cmdOK_Click();

  QWidget& mainWindow_;
  QLabel* picIcon_;
  QLabel* lblTitle_;
  QLabel* lblVersion_;
  QLabel* lblCodePage_;
  QLabel* lblLibraries_;
};

}  // namespace quorrix
