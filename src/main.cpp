// Makes the real parts, hands them to the main window, and runs it.

#include <QApplication>
#include <QMetaObject>

#include "platform/failure.h"
#include "platform/privacy.h"
#include "platform/program_folder.h"
#include "platform/system_clock.h"
#include "shell/failure_messages.h"
#include "shell/main_window/desktop_platform.h"
#include "shell/main_window/main_form.h"
#include "shell/qt_event_pump.h"
#include "shell/qt_message_box.h"
#include "shell/resources.h"

#ifdef _WIN32
#include "platform/windows/user32_window_system.h"
#include "platform/windows/windows_command_shell.h"
#include "platform/windows/windows_file_system.h"
#else
#include "platform/linux/accessible_window_system.h"
#include "platform/linux/posix_file_system.h"
#include "platform/linux/x11_window_stack.h"
#include "shell/qt_command_shell.h"
#include "tracking/browser_scan.h"
#endif

namespace {

#ifdef _WIN32
using RealFileSystem = quorrix::WindowsFileSystem;
using RealCommandShell = quorrix::WindowsCommandShell;

quorrix::User32WindowSystem windowSystem(quorrix::Clock& /*clock*/) { return {}; }
#else
using RealFileSystem = quorrix::PosixFileSystem;
using RealCommandShell = quorrix::QtCommandShell;

quorrix::AccessibleWindowSystem windowSystem(quorrix::Clock& clock) {
  return {clock,
          {.isBrowserTitle = quorrix::isBrowserTitle,
           .titlesOfWindowStack = quorrix::titlesOfX11WindowStack}};
}
#endif

void choosePlatform() {
  const std::string platform =
      quorrix::preferredPlatform({.hasChosenPlatform = qEnvironmentVariableIsSet("QT_QPA_PLATFORM"),
                                  .hasWaylandDisplay = qEnvironmentVariableIsSet("WAYLAND_DISPLAY"),
                                  .hasX11Display = qEnvironmentVariableIsSet("DISPLAY")});
  if (!platform.empty()) qputenv("QT_QPA_PLATFORM", QByteArray::fromStdString(platform));
}

}  // namespace

int main(int argc, char* argv[]) {
  quorrix::forbidMemoryDumps();
  choosePlatform();
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Quorrix"));
  quorrix::registerResources();
  QApplication::setWindowIcon(quorrix::applicationIcon());
  QGuiApplication::setDesktopFileName(QStringLiteral("quorrix"));
  // The program ends with its main window, not with the splash screen.
  QApplication::setQuitOnLastWindowClosed(false);

  quorrix::SystemClock clock;
  RealFileSystem files;
  auto windows = windowSystem(clock);
  quorrix::QtEventPump events;
  quorrix::QtMessageBox messageBox;
  RealCommandShell commandShell;
  quorrix::Path folder;
  try {
    folder = quorrix::programFolder();
  } catch (...) {
    messageBox.show(
        quorrix::failureMessage(quorrix::FailureFamily::StartUp, quorrix::currentFailureNumber()),
        quorrix::MessageBoxStyle::Critical);
    return 1;
  }
  const quorrix::AppPaths paths(folder);
  for (const char* const kept : {"Data", "Archives"}) quorrix::closeToOthers(paths.appPath(kept));
  quorrix::MainForm form({.paths = paths,
                          .files = files,
                          .clock = clock,
                          .events = events,
                          .messageBox = messageBox,
                          .windows = windows,
                          .commandShell = commandShell});
  // Whatever handlers are still running when the window goes return first.
  QObject::connect(&form, &quorrix::MainForm::unloaded, &application,
                   [] { QApplication::exit(0); });
  QMetaObject::invokeMethod(
      &form,
      [&form] {
        if (!form.Form_Load()) QApplication::exit(1);
      },
      Qt::QueuedConnection);
  return QApplication::exec();
}
