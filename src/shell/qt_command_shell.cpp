#include "shell/qt_command_shell.h"

#include <QDesktopServices>
#include <QProcess>
#include <QUrl>

#include "platform/failure.h"
#include "shell/plain_text.h"

namespace quorrix {

void QtCommandShell::run(std::string_view line) {
  const QString address = toQString(codePage_, line.substr(kStartCommand.size()));
  QProcess opener;
  opener.setProgram(QStringLiteral("xdg-open"));
  opener.setArguments({address});
  // Nobody reads its output, which may contain the address.
  opener.setStandardOutputFile(QProcess::nullDevice());
  opener.setStandardErrorFile(QProcess::nullDevice());
  if (opener.startDetached() || QDesktopServices::openUrl(QUrl(address))) return;
  throw Failure(failure::kFileNotFound);
}

}  // namespace quorrix
