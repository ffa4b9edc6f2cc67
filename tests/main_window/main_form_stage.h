// A main form whose surroundings are all faked: the program folder is /Quorrix in a file
// system in memory, pauses cost no time, and the desktop has the windows that a test
// gives it.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QWindow>
#include <stdexcept>
#include <string>
#include <string_view>

#include "main_window/main_form.h"
#include "support/code_pages.h"
#include "support/fake_clock.h"
#include "support/fake_window_system.h"
#include "support/faulty_file_system.h"
#include "support/form_event_pump.h"
#include "support/memory_file_system.h"
#include "support/qt_printers.h"
#include "support/recording_command_shell.h"
#include "support/scripted_message_box.h"
#include "support/site_record_bytes.h"

namespace quorrix::test {

// The visible window with this object name, or null.
inline QWidget* openWindow(const QString& name) {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->objectName() == name && window->isVisible()) return window;
  }
  return nullptr;
}

class MainFormStage {
 public:
  // The folder as it is after installation; the program creates Archives.
  void givenAnInstalledProgram(const std::string& siteFile = "",
                               const std::string& lastArchive = "none\r\n") {
    memory.givenAFile("/Quorrix/Data/nodes.dat", siteFile);
    memory.givenAFile("/Quorrix/Data/notes.dat", "");
    memory.givenAFile("/Quorrix/Data/info.dat", "");
    memory.givenAFile("/Quorrix/Data/purchases.dat", "");
    memory.givenAFile("/Quorrix/Data/load.txt", lastArchive);
  }

  // Starts the program with these records and waits until it is ready.
  void start(const std::string& siteFile = "") {
    givenAnInstalledProgram(siteFile);
    EXPECT_TRUE(form.Form_Load());
    files.reset();
  }

  QAction* action(const char* name) {
    auto* const found = form.findChild<QAction*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::logic_error(std::string("no action ") + name);
    return found;
  }

  void choose(const char* name) { action(name)->trigger(); }

  // Chooses Start Tracking. The loop starts from the event queue; returns when it has
  // ended.
  void track() {
    choose("FileStartTrack");
    QCoreApplication::processEvents();
  }

  SiteTreeView& treeView() { return *form.findChild<SiteTreeView*>(QStringLiteral("TreeView")); }

  TwoPanelStatusBar& statusBar() {
    return *form.findChild<TwoPanelStatusBar*>(QStringLiteral("StatusBar"));
  }

  SitePopupMenu& popupMenu() { return *form.findChild<SitePopupMenu*>(QStringLiteral("POMenu")); }

  std::string panelText(int panel) { return statusBar().panelText(panel).toStdString(); }

  // The text that the desktop shows in the title bar.
  std::string caption() {
    if (form.windowHandle() == nullptr) throw std::logic_error("the window was never shown");
    return form.windowHandle()->title().toStdString();
  }

  Qt::CursorShape pointer() const { return form.cursor().shape(); }

  NodeId node(std::string_view key) { return form.tree().at(key); }

  QModelIndex indexOf(std::string_view key) {
    return static_cast<SiteTreeModel*>(treeView().model())->indexOf(node(key));
  }

  bool isExpanded(std::string_view key) { return treeView().isExpanded(indexOf(key)); }

  // Whether the row is in the visible part of the tree.
  bool isOnScreen(std::string_view key) {
    const QRect row = treeView().visualRect(indexOf(key));
    return row.isValid() && treeView().viewport()->rect().contains(row.center());
  }

  MemoryFileSystem memory;
  FaultyFileSystem files{memory};
  FakeClock clock;
  FormEventPump events{clock};
  ScriptedMessageBox messageBox;
  FakeWindowSystem windows;
  RecordingCommandShell commandShell;
  MainForm form{{.paths = AppPaths("/Quorrix"),
                 .codePage = westernCodePage(),
                 .locale = QLocale(QLocale::English, QLocale::UnitedStates),
                 .files = files,
                 .clock = clock,
                 .events = events,
                 .messageBox = messageBox,
                 .windows = windows,
                 .commandShell = commandShell}};
};

}  // namespace quorrix::test
