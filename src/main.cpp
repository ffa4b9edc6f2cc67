// Makes the real parts, hands them to the main window, and runs it.

#include <QApplication>
#include <QLocale>
#include <QMetaObject>
#include <memory>
#include <optional>

#include "main_window/desktop_platform.h"
#include "main_window/main_form.h"
#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/folder_claim.h"
#include "platform/privacy.h"
#include "platform/program_folder.h"
#include "platform/real_file_system.h"
#include "platform/system_clock.h"
#include "platform/system_code_page.h"
#include "shell/bring_up.h"
#include "shell/failure_messages.h"
#include "shell/qt_event_pump.h"
#include "shell/qt_message_box.h"
#include "shell/resources.h"

#ifdef _WIN32
#include <QWinEventNotifier>

#include "platform/windows/desktop_window_system.h"
#include "platform/windows/windows_command_shell.h"
#else
#include <QAccessible>
#include <QMenuBar>
#include <QSocketNotifier>

#include "platform/linux/accessible_window_system.h"
#include "platform/linux/session_bus.h"
#include "platform/linux/silent_buses.h"
#include "platform/linux/x11_activation.h"
#include "platform/linux/x11_window_stack.h"
#include "shell/qt_command_shell.h"
#endif

namespace {

#ifdef _WIN32
using RealCommandShell = quorrix::WindowsCommandShell;
struct SilentBuses {};  // there are no buses

quorrix::DesktopWindowSystem windowSystem(quorrix::Clock& clock,
                                          const quorrix::CodePage& codePage) {
  return quorrix::DesktopWindowSystem(clock, codePage);
}

std::unique_ptr<QWinEventNotifier> notifierOf(const quorrix::FolderClaim& claim) {
  return std::make_unique<QWinEventNotifier>(reinterpret_cast<Qt::HANDLE>(claim.signal()));
}

void activate(const QWidget& /*window*/) {}  // the later start has passed the foreground on

void connectToolkit(SilentBuses& /*silent*/) {}
#else
using RealCommandShell = quorrix::QtCommandShell;
using quorrix::SilentBuses;

// Qt's own connection; null on Wayland.
xcb_connection_t* x11Connection() {
  const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

quorrix::AccessibleWindowSystem windowSystem(quorrix::Clock& clock,
                                             const quorrix::CodePage& codePage) {
  const auto stack = std::make_shared<quorrix::X11WindowStack>(x11Connection());
  const std::string sessionBus = quorrix::sessionBusAddress();
  return {clock,
          codePage,
          {.stack = [stack] { return stack->titles(); },
           .browserProcesses =
               [sessionBus] { return quorrix::browserProcesses("/proc", sessionBus); }}};
}

std::unique_ptr<QSocketNotifier> notifierOf(const quorrix::FolderClaim& claim) {
  return std::make_unique<QSocketNotifier>(claim.signal(), QSocketNotifier::Read);
}

void activate(const QWidget& window) {
  if (xcb_connection_t* const connection = x11Connection()) {
    quorrix::activateX11Window(connection, static_cast<xcb_window_t>(window.winId()));
  }
}

// Qt connects to its buses when it is first asked about accessibility and about menu bars.
void connectToolkit(SilentBuses& silent) {
  if (!silent.areHidden()) return;
  static_cast<void>(QAccessible::isActive());
  const QMenuBar menuBar;
  silent.restore();
}
#endif

constexpr std::chrono::seconds kAnswerPatience{5};
constexpr std::string_view kDoesNotAnswer =
    "Quorrix is already running on this folder, but it does not answer.";
constexpr std::string_view kNoCodePage =
    "This system lacks the character set of your language. Install it and start Quorrix again.";

// The program does not fall back to another page, in which notes would be shown, and kept,
// as other letters.
std::optional<quorrix::CodePage> usersCodePage() {
  try {
    return quorrix::CodePage(quorrix::systemCodePage());
  } catch (const quorrix::Failure&) {
    return std::nullopt;
  }
}

std::string chosenPlatform() {
  return quorrix::preferredPlatform(
      {.hasChosenPlatform = qEnvironmentVariableIsSet("QT_QPA_PLATFORM"),
       .hasWaylandDisplay = qEnvironmentVariableIsSet("WAYLAND_DISPLAY"),
       .hasX11Display = qEnvironmentVariableIsSet("DISPLAY")});
}

}  // namespace

int main(int argc, char* argv[]) {
  quorrix::forbidMemoryDumps();
  const std::string activationToken = qEnvironmentVariable("XDG_ACTIVATION_TOKEN").toStdString();
  quorrix::DesktopArguments arguments(argc, argv, chosenPlatform());
  SilentBuses silent;
  QApplication application(arguments.count(), arguments.values());
  connectToolkit(silent);
  QApplication::setLayoutDirection(quorrix::desktopDirection(QLocale::system().uiLanguages()));
  QApplication::setApplicationName(QStringLiteral("Quorrix"));
  quorrix::registerResources();
  QApplication::setWindowIcon(quorrix::applicationIcon());
  QGuiApplication::setDesktopFileName(QStringLiteral("quorrix"));
  // The program ends with its main window, not with the splash screen.
  QApplication::setQuitOnLastWindowClosed(false);

  quorrix::QtMessageBox messageBox;
  const std::optional<quorrix::CodePage> codePage = usersCodePage();
  if (!codePage) {
    messageBox.show(kNoCodePage, quorrix::MessageBoxStyle::Critical);
    return 1;
  }
  quorrix::SystemClock clock;
  quorrix::RealFileSystem files;
  auto windows = windowSystem(clock, *codePage);
  quorrix::QtEventPump events;
  RealCommandShell commandShell(*codePage);
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
  // Not "Archives": a user may have opened that folder to others on purpose.
  quorrix::closeToOthers(paths.appPath("Data"));
  quorrix::FolderClaim claim;
  const auto claimed = claim.claim(paths.appPath("Data"), activationToken, kAnswerPatience);
  if (claimed == quorrix::ClaimResult::Answered) return 0;
  if (claimed == quorrix::ClaimResult::Unanswered) {
    messageBox.show(kDoesNotAnswer, quorrix::MessageBoxStyle::Critical);
    return 1;
  }
  quorrix::MainForm form({.paths = paths,
                          .codePage = *codePage,
                          .locale = quorrix::localeOfDates(),
                          .files = files,
                          .clock = clock,
                          .events = events,
                          .messageBox = messageBox,
                          .windows = windows,
                          .commandShell = commandShell});
  const auto notifier = claimed == quorrix::ClaimResult::Claimed ? notifierOf(claim) : nullptr;
  if (notifier) {
    using Notifier = std::remove_reference_t<decltype(*notifier)>;
    QObject::connect(notifier.get(), &Notifier::activated, &form, [&] {
      const auto token = claim.takeRequest();
      const QWidget* const window = token ? quorrix::bringUpProgram(form, *token) : nullptr;
      if (window != nullptr) activate(*window);
    });
    // A later start then waits for the end of this program and takes its place.
    QObject::connect(&form, &quorrix::MainForm::unloaded, notifier.get(),
                     [&notifier] { notifier->setEnabled(false); });
  }
  // Handlers that are still running when the window closes return first.
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
