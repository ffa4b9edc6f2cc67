// The main window: menus, the site tree, the status bar. It owns the collection of
// sites and the tracking loop, runs the start-up, and opens every dialog.
#pragma once

#include <QLocale>
#include <QMainWindow>
#include <QPointer>
#include <chrono>
#include <functional>

#include "archives/archive_windows.h"
#include "main_window/site_collection.h"
#include "main_window/two_panel_status_bar.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/command_shell.h"
#include "platform/event_pump.h"
#include "platform/file_system.h"
#include "platform/message_box.h"
#include "platform/window_system.h"
#include "records/record_dialog.h"
#include "search/search_windows.h"
#include "shell/app_paths.h"
#include "shell/failure_messages.h"
#include "sitetree/site_popup_menu.h"
#include "sitetree/site_tree_view.h"
#include "tracking/tracking_loop.h"

class QUrl;

namespace quorrix {

class HelpWindow;
class UnreadableBrowserNotice;

class MainForm final : public QMainWindow, private TrackingDisplay, private SiteDisplay {
  Q_OBJECT

 public:
  // What the form works with; all references must outlive it.
  struct Parts {
    AppPaths paths;
    const CodePage& codePage;
    QLocale locale;  // how the user writes dates
    FileSystem& files;
    Clock& clock;
    EventPump& events;
    MessageBox& messageBox;
    WindowSystem& windows;
    CommandShell& commandShell;
  };

  explicit MainForm(const Parts& parts);
  ~MainForm() override;

  // Runs the start-up: splash screen, window, wait dialog, data. Returns false if it
  // failed; the message was then shown and the window is closed.
  bool Form_Load();

  // Runs a slot so that no exception leaves it. A failure that the command's own guard did
  // not report is shown as its reason alone.
  void runCommand(const std::function<void()>& command);

  void FileStartTrack_Click();
  void FileStopTrack_Click();
  void FileSearch_Click();
  void FileDelete_Click();
  void FileClear_Click();
  void FileArchive_Click();
  void FileLoadArchive_Click();
  void FileDeleteArchive_Click();
  void FileExit_Click();
  void HelpHelp_Click();
  void HelpAbout_Click();
  void PopUpShowAll_Click();
  void PopUpHideAll_Click();
  void PopUpLaunch_Click();
  void PopUpNotes_Click();
  void PopUpPasswords_Click();
  void PopUpNewPurchase_Click();
  void PopUpPurchases_Click();
  void TreeView_MouseUp(int button, int shift, int x, int y);

  [[nodiscard]] SiteTree& tree() { return sites_.tree(); }
  [[nodiscard]] const WorkingPaths& workingPaths() const { return sites_.paths(); }
  // True from the moment that the user starts tracking.
  [[nodiscard]] bool isTracking() const { return startsToCome_ > 0 || tracking_.isTracking(); }

 signals:
  // The window has been unloaded; the program then ends.
  void unloaded();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void showSplashScreen();
  void showWindowAndLoad();
  void waitYielding(std::chrono::milliseconds time);
  void layOut();
  void Form_Unload();
  void setCaption();
  [[nodiscard]] QString toQString(std::string_view text) const;
  void locate(NodeId node);
  [[nodiscard]] QString describe(const std::string& address);
  [[nodiscard]] QString describe(NodeId node);
  [[nodiscard]] QString withScheme(const std::string& address,
                                   const std::optional<SiteFile::LatestVisit>& visit);
  [[nodiscard]] std::optional<SiteFile::LatestVisit> latestVisit(const std::string& address);
  void beginTracking();
  [[nodiscard]] bool refusesWhileTracking();
  [[nodiscard]] bool refuses(std::string_view whenThereAreNoSites);
  [[nodiscard]] ArchiveWindows::Parts archiveParts();
  [[nodiscard]] std::function<void()> onPopupSite(void (MainForm::*handler)());
  [[nodiscard]] RecordDialogParts recordDialogParts();
  [[nodiscard]] SearchWindows::Parts searchParts();
  template <typename Dialog>
  void showRecordDialog(FailureFamily family);
  void showHelp(const std::string& page);
  void openAddress(const QUrl& address);

  void showTrackingStatus(std::string_view text) override;
  void makeVisible(NodeId node) override;
  void showUnreadableBrowsers(const std::vector<UnreadableBrowser>& browsers) override;
  void showHosts() override;
  void showLastArchive(std::string_view name) override;
  void showLastArchiveFolder(const Path& folder) override;

  Parts parts_;
  SiteCollection sites_;
  TrackingLoop tracking_;
  SiteTreeView* treeView_;
  TwoPanelStatusBar* statusBar_;
  UnreadableBrowserNotice* unreadableBrowserNotice_;
  SitePopupMenu* popupMenu_;
  SearchWindows searchWindows_;
  ArchiveWindows archiveWindows_;
  QPointer<HelpWindow> helpWindow_;
  NodeId popupSite_ = kNoNode;        // selected when the popup menu was opened; kNoNode if removed
  bool somePurchasesToLoad_ = false;  // as of the last load of the list of purchases
  int startsToCome_ = 0;              // queued starts of tracking that have not begun
  bool isUnloaded_ = false;
};

}  // namespace quorrix
