#include "main_window/main_form.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStringBuilder>

#include "archives/shown_path.h"
#include "main_window/browser_launch.h"
#include "main_window/help_window.h"
#include "main_window/load_wait_dialog.h"
#include "main_window/main_menu.h"
#include "main_window/splash_screen.h"
#include "main_window/unreadable_browser_notice.h"
#include "records/new_purchase_dialog.h"
#include "records/notes_dialog.h"
#include "records/purchases_dialog.h"
#include "records/user_id_password_dialog.h"
#include "search/site_search.h"
#include "shell/guarded.h"
#include "shell/plain_text.h"
#include "shell/pointer.h"
#include "shell/resources.h"
#include "shell/twips.h"
#include "shell/window_frame.h"

namespace quorrix {
namespace {

using std::chrono::seconds;

constexpr seconds kSplashTime{2};
constexpr std::chrono::milliseconds kStartUpPause{100};  // between two checks of the clock
constexpr seconds kWaitDialogTime{1};

constexpr QSize kFirstSize{720, 540};  // pixels

// The space that the window's borders, title, menu bar and status bar take up, in twips.
constexpr int kWidthBesideTree = 100;
constexpr int kHeightBesideTree = 1100;

constexpr QLatin1StringView kLastArchiveLoaded("Last archive loaded: ");

constexpr double kFirstPanelShare = 0.65;
constexpr double kSecondPanelShare = 0.35;

constexpr MenuItem entry(const char* name, const char* caption, void (MainForm::*handler)(),
                         QKeyCombination keys = {}) {
  return {MenuItemKind::Entry, name, caption, handler, MenuItemNeeds::Nothing, keys};
}

constexpr MenuItem dataEntry(const char* name, const char* caption, void (MainForm::*handler)(),
                             QKeyCombination keys = {}) {
  return {MenuItemKind::Entry, name, caption, handler, MenuItemNeeds::Data, keys};
}

constexpr MenuItem separator(const char* name) {
  return {MenuItemKind::Separator, name, "", nullptr};
}

constexpr MenuItem kMenus[] = {
    {MenuItemKind::Menu, "FileMenu", "&File", nullptr},
    dataEntry("FileStartTrack", "Start &Tracking", &MainForm::FileStartTrack_Click),
    dataEntry("FileStopTrack", "&Stop Tracking", &MainForm::FileStopTrack_Click),
    separator("FileSep2"),
    dataEntry("FileSearch", "Search Dis&play...", &MainForm::FileSearch_Click,
              Qt::CTRL | Qt::Key_F),
    separator("FileSep3"),
    dataEntry("FileDelete", "&Delete Selected Sites", &MainForm::FileDelete_Click, Qt::Key_Delete),
    dataEntry("FileClear", "&Clear Display", &MainForm::FileClear_Click),
    separator("FileSep4"),
    {MenuItemKind::Submenu, "FileArchiveTop", "A&rchive", nullptr},
    dataEntry("FileArchive", "&Archive Sites...", &MainForm::FileArchive_Click),
    dataEntry("FileLoadArchive", "&Load Sites Archive...", &MainForm::FileLoadArchive_Click),
    dataEntry("FileDeleteArchive", "&Delete Sites Archive...", &MainForm::FileDeleteArchive_Click),
    {MenuItemKind::SubmenuEnd, "", "", nullptr},
    separator("FileSep5"),
    entry("FileExit", "&Exit", &MainForm::FileExit_Click, Qt::CTRL | Qt::Key_Q),
    {MenuItemKind::Menu, "HelpMenu", "&Help", nullptr},
    entry("HelpHelp", "&Help", &MainForm::HelpHelp_Click, Qt::Key_F1),
    entry("HelpAbout", "&About Quorrix", &MainForm::HelpAbout_Click),
};

constexpr std::string_view kDeleteAnyway =
    "You are about to delete the selected site and all its sub sites. Deleting will remove the "
    "selected items from the current view and permanently destroy all information associated "
    "with them. Delete anyway?";

}  // namespace

MainForm::MainForm(const Parts& parts)
    : parts_(parts),
      sites_(parts.files, parts.clock, parts.paths, *this),
      tracking_({.windows = parts.windows,
                 .tree = sites_.tree(),
                 .siteFile = sites_.siteFile(),
                 .events = parts.events,
                 .messageBox = parts.messageBox,
                 .display = *this}),
      searchWindows_(searchParts()),
      archiveWindows_(archiveParts()) {
  setObjectName(QStringLiteral("MainForm"));
  setWindowTitle(QStringLiteral("Quorrix"));
  fillMenuBar(*menuBar(), *this, kMenus);
  enableDataEntries(*menuBar(), kMenus, false);

  // The tree is positioned by layOut(). Its space also changes with the heights of the
  // menu bar and the status bar, for example after a change of font or style.
  setCentralWidget(new QWidget(this));
  treeView_ = new SiteTreeView(tree(), parts_.codePage, centralWidget());
  treeView_->describeBy([this](NodeId node) { return describe(node); });
  unreadableBrowserNotice_ = new UnreadableBrowserNotice(
      centralWidget(), [this](const std::function<void()>& work) { runCommand(work); });
  connect(unreadableBrowserNotice_, &UnreadableBrowserNotice::changed, this, &MainForm::layOut);
  statusBar_ = new TwoPanelStatusBar(this);
  setStatusBar(statusBar_);
  centralWidget()->installEventFilter(this);

  SitePopupMenu::Handlers handlers;
  handlers.PopUpShowAll_Click = onPopupSite(&MainForm::PopUpShowAll_Click);
  handlers.PopUpHideAll_Click = onPopupSite(&MainForm::PopUpHideAll_Click);
  handlers.PopUpLaunch_Click = onPopupSite(&MainForm::PopUpLaunch_Click);
  handlers.PopUpNotes_Click = onPopupSite(&MainForm::PopUpNotes_Click);
  handlers.PopUpPasswords_Click = onPopupSite(&MainForm::PopUpPasswords_Click);
  handlers.PopUpNewPurchase_Click = onPopupSite(&MainForm::PopUpNewPurchase_Click);
  handlers.PopUpPurchases_Click = onPopupSite(&MainForm::PopUpPurchases_Click);
  popupMenu_ = new SitePopupMenu(handlers, this);
  connect(treeView_, &SiteTreeView::mouseUp, this, [this](int button, int shift, int x, int y) {
    runCommand([=, this] { TreeView_MouseUp(button, shift, x, y); });
  });
  const auto forgetPopupSite = [this] { popupSite_ = kNoNode; };
  connect(treeView_->model(), &QAbstractItemModel::modelReset, this, forgetPopupSite);
  connect(treeView_->model(), &QAbstractItemModel::rowsRemoved, this, forgetPopupSite);
  connect(treeView_, &SiteTreeView::nodeChosen, this,
          [this] { runCommand([this] { setCaption(); }); });
  connect(treeView_, &SiteTreeView::enterPressed, this, [this] {
    runCommand([this] {
      if (tree().selected() != tree().root()) PopUpLaunch_Click();
    });
  });

  resize(kFirstSize.boundedTo(roomInsideAFrame(*screen())));
  // The position is not left to the window manager, which places a window only once it is
  // shown. The wait dialog centres itself over this window before that.
  move(screen()->availableGeometry().center() - rect().center());
  treeView_->setFocus();
}

// Child widgets outlive the members, but the view uses the tree until its own destructor.
MainForm::~MainForm() {
  delete treeView_;
  delete helpWindow_.data();
}

bool MainForm::Form_Load() {
  const bool isLoaded = guarded(*this, parts_.messageBox, FailureFamily::StartUp, [this] {
    showSplashScreen();
    if (!isUnloaded_) showWindowAndLoad();  // the user may have closed the splash screen
  });
  if (!isLoaded) FileExit_Click();
  return isLoaded;
}

void MainForm::showSplashScreen() {
  SplashScreen splash;
  splash.show();
  waitYielding(kSplashTime);
}

void MainForm::showWindowAndLoad() {
  const Hourglass hourglass(*this);
  show();
  LoadWaitDialog waitDialog(*this);
  waitDialog.show();
  waitYielding(kWaitDialogTime);
  if (isUnloaded_) return;  // closed during the wait
  sites_.load();
  statusBar_->setPanelText(2, QStringLiteral("Right click site address for site menu."));
  enableDataEntries(*menuBar(), kMenus, true);
  waitDialog.hide();
}

void MainForm::waitYielding(std::chrono::milliseconds time) {
  const auto start = parts_.clock.elapsed();
  while (!isUnloaded_ && parts_.clock.elapsed() - start < time) parts_.events.pause(kStartUpPause);
}

void MainForm::runCommand(const std::function<void()>& command) {
  guarded(*this, parts_.messageBox, FailureFamily::OtherCommand, command);
}

// The loop is started from the event queue, because a click over the accessibility bus is
// answered only when this handler returns.
void MainForm::FileStartTrack_Click() {
  setWindowTitle(QStringLiteral("Quorrix"));
  ++startsToCome_;
  QMetaObject::invokeMethod(
      this, [this] { runCommand([this] { beginTracking(); }); }, Qt::QueuedConnection);
}

void MainForm::beginTracking() {
  if (startsToCome_ == 0) return;  // stopped before it began
  --startsToCome_;
  const bool isEnded = guarded(*this, parts_.messageBox, FailureFamily::Tracking,
                               [this] { tracking_.startTracking(); });
  if (!isEnded) tracking_.stopAfterFailure();
}

void MainForm::FileStopTrack_Click() {
  startsToCome_ = 0;
  tracking_.stopTracking();
}

bool MainForm::refusesWhileTracking() {
  if (!isTracking()) return false;
  parts_.messageBox.show("You must stop tracking websites before using this feature.",
                         MessageBoxStyle::Information);
  return true;
}

// Returns true, and tells the user why, if tracking is on or the display is empty.
bool MainForm::refuses(std::string_view whenThereAreNoSites) {
  if (refusesWhileTracking()) return true;
  if (!sites_.isDisplayEmpty()) return false;
  parts_.messageBox.show(whenThereAreNoSites, MessageBoxStyle::Information);
  return true;
}

void MainForm::FileSearch_Click() {
  if (refuses("No website addresses to search in current display.")) return;
  searchWindows_.openSearch();
}

SearchWindows::Parts MainForm::searchParts() {
  return {
      .codePage = parts_.codePage,
      .tree = tree(),
      .clock = parts_.clock,
      .messageBox = parts_.messageBox,
      .mainWindow = *this,
      .search =
          [this](const SearchCriteria& criteria) {
            return searchSiteFile(parts_.files, sites_.paths(), parts_.codePage, criteria);
          },
      .locate = [this](NodeId node) { locate(node); },
      .describe = [this](const std::string& address) { return describe(address); },
      .withScheme =
          [this](const std::string& address) { return withScheme(address, latestVisit(address)); }};
}

void MainForm::FileDelete_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::DeleteSites, [this] {
    if (refuses("No website addresses to delete in current display.")) return;
    setCaption();  // tracking may have selected another site; show the one to delete
    const auto answer = parts_.messageBox.show(kDeleteAnyway, MessageBoxStyle::ConfirmWarning);
    if (answer != MessageBoxButton::Ok) return;
    const Hourglass hourglass(*this);
    sites_.deleteSelected();
    treeView_->makeVisible(tree().selected());
    setCaption();
  });
}

void MainForm::FileClear_Click() {
  if (refuses("No website addresses to clear in current display.")) return;
  const Hourglass hourglass(*this);
  sites_.clear();
  setCaption();
}

ArchiveWindows::Parts MainForm::archiveParts() {
  return {.dialogs = {.files = parts_.files,
                      .messageBox = parts_.messageBox,
                      .mainWindow = *this,
                      .archives = parts_.paths.appPath("Archives")},
          .hasSitesToArchive = [this] { return hasSitesToArchive(parts_.files, sites_.paths()); },
          .displayHoldsSites = [this] { return !sites_.isDisplayEmpty(); },
          .archiveTo =
              [this](const Path& folder, EarlierArchive earlier) {
                sites_.archiveTo(folder, earlier);
                setWindowTitle(QStringLiteral("Quorrix"));
              },
          .loadArchive =
              [this](const Path& folder) {
                sites_.loadArchive(folder);
                setWindowTitle(QStringLiteral("Quorrix"));
              }};
}

void MainForm::FileArchive_Click() {
  if (!refusesWhileTracking()) archiveWindows_.openArchiveSites();
}

void MainForm::FileLoadArchive_Click() {
  if (!refusesWhileTracking()) archiveWindows_.openLoadArchive();
}

void MainForm::FileDeleteArchive_Click() {
  if (!refusesWhileTracking()) archiveWindows_.openDeleteArchive();
}

void MainForm::FileExit_Click() {
  hide();
  Form_Unload();
}

void MainForm::PopUpShowAll_Click() {
  treeView_->expandAll(tree().selected(), tracking_.addressFound());
}

void MainForm::PopUpHideAll_Click() { treeView_->collapseNode(tree().selected()); }

// While the menu is open, tracking goes on and may select the site just visited. An entry
// acts on the site that the user opened the menu for.
std::function<void()> MainForm::onPopupSite(void (MainForm::*handler)()) {
  return [this, handler] {
    runCommand([this, handler] {
      if (popupSite_ != kNoNode) tree().select(popupSite_);
      (this->*handler)();
    });
  };
}

RecordDialogParts MainForm::recordDialogParts() {
  return {.codePage = parts_.codePage,
          .locale = parts_.locale,
          .files = parts_.files,
          .clock = parts_.clock,
          .messageBox = parts_.messageBox,
          .paths = sites_.paths(),
          .tree = tree(),
          .mainWindow = *this};
}

template <typename Dialog>
void MainForm::showRecordDialog(FailureFamily family) {
  guarded(*this, parts_.messageBox, family, [this] {
    const Hourglass hourglass(*this);
    Dialog dialog(recordDialogParts());
    dialog.Form_Load();
    dialog.exec();
  });
}

void MainForm::PopUpLaunch_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::LinkInBrowser, [this] {
    const NodeId site = tree().selected();
    launchSiteInBrowser(parts_.commandShell, tree().tag(site), tree().key(site));
  });
}

void MainForm::PopUpNotes_Click() { showRecordDialog<NotesDialog>(FailureFamily::OpenNotes); }

void MainForm::PopUpPasswords_Click() {
  showRecordDialog<UIDDialog>(FailureFamily::OpenUserIDPassword);
}

void MainForm::PopUpNewPurchase_Click() {
  showRecordDialog<NewPurchaseDialog>(FailureFamily::OpenNewPurchase);
}

void MainForm::PopUpPurchases_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::OpenPurchases, [this] {
    const Hourglass hourglass(*this);
    PurchasesDialog dialog(recordDialogParts());
    dialog.Form_Load(somePurchasesToLoad_);
    if (somePurchasesToLoad_) dialog.exec();
  });
}

void MainForm::TreeView_MouseUp(int button, int /*shift*/, int x, int y) {
  setCaption();
  if (button != mouse_button::kRight) return;
  popupSite_ = tree().selected();
  popupMenu_->setSiteSelected(popupSite_ != tree().root());
  popupMenu_->popup(treeView_->viewport()->mapToGlobal(QPoint(x, y)));
}

QString MainForm::toQString(std::string_view text) const {
  return quorrix::toQString(parts_.codePage, text);
}

void MainForm::setCaption() {
  const NodeId selected = tree().selected();
  const bool isRoot = selected == tree().root();
  setWindowTitle(isRoot ? QStringLiteral("Quorrix")
                        : QStringLiteral("Quorrix - ") %
                              asWindowTitle(toQString(tree().key(selected))));
}

void MainForm::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  layOut();
}

// The window manager's frame counts as part of the window. It is known only some time
// after the window is shown, when the window moves into its frame.
void MainForm::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  layOut();
}

void MainForm::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  layOut();
}

bool MainForm::eventFilter(QObject* watched, QEvent* event) {
  if (watched == centralWidget() && event->type() == QEvent::Resize) layOut();
  return QMainWindow::eventFilter(watched, event);
}

void MainForm::layOut() {
  const int width = twipsFromPixels(frameGeometry().width());
  const int height = twipsFromPixels(frameGeometry().height());
  // A large font can make the menu bar and the status bar higher than the space left for
  // them. The tree then ends where they begin.
  QSize free = centralWidget()->size();
  free.rheight() -= unreadableBrowserNotice_->placeAtBottomOf(free);
  const QSize wanted(pixelsFromTwips(width - kWidthBesideTree),
                     pixelsFromTwips(height - kHeightBesideTree));
  treeView_->resize(wanted.boundedTo(free));
  statusBar_->setPanelWidths(pixelsFromTwips(width * kFirstPanelShare),
                             pixelsFromTwips(width * kSecondPanelShare));
}

void MainForm::closeEvent(QCloseEvent* event) {
  Form_Unload();
  event->accept();
}

void MainForm::Form_Unload() {
  if (isUnloaded_) return;
  isUnloaded_ = true;
  setCursor(Qt::WaitCursor);  // to the end
  startsToCome_ = 0;
  tracking_.abandon();
  searchWindows_.unloadAll();
  QApplication::closeAllWindows();
  emit unloaded();
}

void MainForm::showTrackingStatus(std::string_view text) {
  statusBar_->setPanelText(2, toQString(text));
  // Task bars show the icon when the window is hidden.
  setWindowIcon(tracking_.isTracking() ? trackingIcon() : QApplication::windowIcon());
}

void MainForm::makeVisible(NodeId node) { treeView_->makeVisible(node); }

// A folder that was never visited itself has no record. A site that was deleted after a
// search found it has neither a record nor a node.
QString MainForm::describe(const std::string& address) {
  const auto visit = latestVisit(address);
  const QString text = withScheme(address, visit);
  return visit ? text % QStringLiteral("\nLatest visit: ") % toQString(visit->stamp) : text;
}

QString MainForm::describe(NodeId node) {
  return node == tree().root() ? QString() : describe(std::string(tree().key(node)));
}

QString MainForm::withScheme(const std::string& address,
                             const std::optional<SiteFile::LatestVisit>& visit) {
  const NodeId node = tree().find(address);
  if (node == kNoNode && !visit) return toQString(address);
  const char flag = node != kNoNode ? tree().tag(node) : visit->protocolFlag;
  return toQString(schemePrefix(flag)) % toQString(address);
}

// Read failures are ignored: the visit is needed only for a tool tip or a copied address.
std::optional<SiteFile::LatestVisit> MainForm::latestVisit(const std::string& address) {
  try {
    return sites_.siteFile().latestVisit(address);
  } catch (...) {
    return std::nullopt;
  }
}

void MainForm::locate(NodeId node) {
  treeView_->makeVisible(node, SiteTreeView::PositionAtCenter);
  tree().select(node);
  setCaption();
}

void MainForm::showHosts() { treeView_->expandDNSNodes(); }

void MainForm::showLastArchive(std::string_view name) {
  statusBar_->setPanelText(1, kLastArchiveLoaded % fromPlatformText(parts_.codePage, name));
}

void MainForm::showLastArchiveFolder(const Path& folder) {
  statusBar_->setPanelText(1, kLastArchiveLoaded % textOfPath(folder));
}

void MainForm::showUnreadableBrowsers(const std::vector<UnreadableBrowser>& browsers) {
  unreadableBrowserNotice_->showBrowsers(browsers);
}

}  // namespace quorrix
