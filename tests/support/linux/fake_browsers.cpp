#include "support/linux/fake_browsers.h"

#include <atspi/atspi-constants.h>

namespace quorrix::test {
namespace {

constexpr std::uint64_t kActive = std::uint64_t{1} << ATSPI_STATE_ACTIVE;
constexpr std::uint64_t kShowing = std::uint64_t{1} << ATSPI_STATE_SHOWING;

}  // namespace

FakeBrowser::FakeBrowser(const std::string& busAddress, const std::string& name,
                         const std::string& toolkit, const std::string& wellKnownName)
    : program_(busAddress, wellKnownName) {
  program_.setNames(name, toolkit);
  list();
}

std::string FakeBrowser::root() const {
  return program_.uniqueName() + FakeAccessibleProgram::kRoot;
}

void FakeBrowser::show(const std::string& path, const FakeBrowserWindow& window) {
  windows_[path] = window;
  showParts(path, window);
  load(path, path + "/page", window.address);
  list();
}

void FakeBrowser::close(const std::string& path) {
  windows_.erase(path);
  program_.remove(path);
  list();
}

void FakeBrowser::list() {
  FakeObject root;
  for (const auto& [path, window] : windows_) root.children.push_back(path);
  program_.set(FakeAccessibleProgram::kRoot, root);
}

FakeObject FakeBrowser::frame(const FakeBrowserWindow& window) const {
  FakeObject object;
  object.role = ATSPI_ROLE_FRAME;
  object.name = window.name;
  object.states = window.isActive ? kActive : 0;
  return object;
}

void FakeBrowser::part(const std::string& path, std::uint32_t role, const std::string& attribute,
                       const std::vector<std::string>& children) {
  FakeObject object;
  object.role = role;
  const std::size_t equals = attribute.find('=');
  if (equals != std::string::npos) {
    object.attributes = {{attribute.substr(0, equals), attribute.substr(equals + 1)}};
  }
  object.children = children;
  program_.set(path, object);
}

void FakeFirefox::showParts(const std::string& path, const FakeBrowserWindow& window) {
  FakeObject object = frame(window);
  object.children = {path + "/tools", path + "/navigation", path + "/panels"};
  program_.set(path, object);
  part(path + "/navigation", ATSPI_ROLE_TOOL_BAR, "id=nav-bar", {});
  part(path + "/tools", ATSPI_ROLE_TOOL_BAR, "id=TabsToolbar", {path + "/button"});
  const char* const id = window.mark == FakeBrowserWindow::Mark::Ordinary ? "id=firefox-view-button"
                         : window.mark == FakeBrowserWindow::Mark::Private
                             ? "id=reset-pbm-toolbar-button"
                             : "id=alltabs-button";
  part(path + "/button", ATSPI_ROLE_PUSH_BUTTON, id, {});
  part(path + "/panels", ATSPI_ROLE_PANEL, "id=tabbrowser-tabpanels", {path + "/pane"});
  part(path + "/pane", ATSPI_ROLE_SCROLL_PANE, "class=browserSidebarContainer deck-selected",
       {path + "/browser"});
}

void FakeFirefox::load(const std::string& path, const std::string& document,
                       const std::string& address, std::uint64_t documentStates) {
  FakeObject page;
  page.role = ATSPI_ROLE_DOCUMENT_WEB;
  page.addressAttribute = "DocURL";
  page.children = {document + "/text"};
  part(document + "/text", ATSPI_ROLE_PARAGRAPH, "tag=p", {});
  page.address = address;
  page.states = documentStates;
  program_.set(document, page);
  part(path + "/browser", ATSPI_ROLE_INTERNAL_FRAME, "", {document});
}

void FakeChromium::showParts(const std::string& path, const FakeBrowserWindow& window) {
  part(path + "/client", ATSPI_ROLE_PANEL, "class=NonClientView", {path + "/frameview"});
  part(path + "/frameview", ATSPI_ROLE_PANEL, "class=BrowserFrameViewLinux", {path + "/browser"});
  part(path + "/browser", ATSPI_ROLE_PANEL, "class=BrowserView",
       {path + "/top", path + "/contents"});
  const bool hasBar = window.mark != FakeBrowserWindow::Mark::None;
  part(path + "/top", ATSPI_ROLE_PANEL, "class=TopContainerView",
       hasBar ? std::vector{path + "/bookmarks"} : std::vector<std::string>{});
  part(path + "/bookmarks", ATSPI_ROLE_TOOL_BAR, "class=BookmarkBarView", {path + "/groups"});
  part(path + "/groups", ATSPI_ROLE_TOOL_BAR,
       window.mark == FakeBrowserWindow::Mark::Ordinary ? "class=SavedTabGroupBar"
                                                        : "class=ButtonSeparatorView",
       {});
  part(path + "/contents", ATSPI_ROLE_PANEL, "class=MultiContentsView",
       {path + "/side", path + "/side2"});
  // Exists even while the view is not split.
  part(path + "/side2", ATSPI_ROLE_PANEL, "class=ContentsContainerView", {path + "/bar2"});
  part(path + "/bar2", ATSPI_ROLE_PANEL, "class=MultiContentsViewMiniToolbar", {path + "/label2"});
  label(path + "/label2", "", 0);
}

void FakeChromium::load(const std::string& path, const std::string& document,
                        const std::string& address, std::uint64_t documentStates) {
  FakeObject page;
  page.role = ATSPI_ROLE_DOCUMENT_WEB;
  page.addressAttribute = "URI";
  page.address = address;
  page.states = documentStates;
  program_.set(document, page);
  showSide(path, {document, path + "/bar"});
  part(path + "/bar", ATSPI_ROLE_PANEL, "class=MultiContentsViewMiniToolbar", {path + "/label"});
  push(path, address);
  embed(path, document);
}

void FakeChromium::embed(const std::string& path, const std::string& document) {
  FakeObject object = frame(windows_[path]);
  object.attributes = {{"class", "BrowserRootView"}};
  object.embeds = document;
  object.children = {path + "/client"};
  program_.set(path, object);
}

// The side that is used while the view is not split.
void FakeChromium::showSide(const std::string& path, const std::vector<std::string>& children) {
  FakeObject side;
  side.role = ATSPI_ROLE_PANEL;
  side.attributes = {{"class", "ContentsContainerView"}};
  side.states = kShowing;
  side.children = children;
  program_.set(path + "/side", side);
}

void FakeChromium::openSidePanel(const std::string& path) {
  FakeObject document;
  document.role = ATSPI_ROLE_DOCUMENT_WEB;
  document.name = "Reading mode";
  document.addressAttribute = "URI";
  document.address = "chrome-untrusted://read-anything-side-panel.top-chrome/";
  program_.set(path + "/reading", document);
  part(path + "/panel", ATSPI_ROLE_PANEL, "class=ContentsWebView", {path + "/reading"});
  embed(path, path + "/reading");
}

void FakeChromium::chooseTab(const std::string& path, const std::string& document,
                             const std::string& address) {
  FakeObject page;
  page.role = ATSPI_ROLE_DOCUMENT_WEB;
  page.addressAttribute = "URI";
  page.address = address;
  program_.set(document, page);
  showSide(path, {document, path + "/bar"});
  push(path, address);
  embed(path, "");
}

void FakeChromium::push(const std::string& path, const std::string& address) {
  windows_[path].address = address;
  label(path + "/label", address, 0);
}

// The half that is not in use shows its label.
void FakeChromium::split(const std::string& path, const std::string& document,
                         const std::string& address, bool isSecondActive) {
  FakeObject page;
  page.role = ATSPI_ROLE_DOCUMENT_WEB;
  page.addressAttribute = "URI";
  page.address = address;
  program_.set(document, page);
  part(path + "/side2", ATSPI_ROLE_PANEL, "class=ContentsContainerView",
       {document, path + "/bar2"});
  label(path + "/label", windows_[path].address, isSecondActive ? kShowing : 0);
  label(path + "/label2", address, isSecondActive ? 0 : kShowing);
}

void FakeChromium::label(const std::string& path, const std::string& address,
                         std::uint64_t states) {
  FakeObject label;
  label.role = ATSPI_ROLE_STATIC;
  label.description = address;
  label.states = states;
  program_.set(path, label);
}

// The paths of the second tab begin with "/tab", followed by the path of the window.
void FakeGnomeWeb::showParts(const std::string& path, const FakeBrowserWindow& window) {
  FakeObject object = frame(window);
  object.children = {path + "/tools", path + "/tabs"};
  program_.set(path, object);
  part(path + "/tools", ATSPI_ROLE_PANEL, "", {});
  FakeObject tabs;
  tabs.role = ATSPI_ROLE_FILLER;
  tabs.states = kShowing;
  tabs.children = {path + "/panel", "/tab" + path + "/panel"};
  program_.set(path + "/tabs", tabs);
  chooseTab(path, 1);
}

void FakeGnomeWeb::chooseTab(const std::string& path, int number) {
  showTab(path, number == 1);
  showTab("/tab" + path, number == 2);
}

void FakeGnomeWeb::openEmptyTab(const std::string& path) {
  chooseTab(path, 2);
  FakeObject view;
  view.role = ATSPI_ROLE_FILLER;
  program_.set("/tab" + path + "/view", view);
}

void FakeGnomeWeb::showTab(const std::string& path, bool isChosen) {
  FakeObject panel;
  panel.role = ATSPI_ROLE_PANEL;
  panel.states = isChosen ? kShowing : 0;
  panel.children = {path + "/view"};
  program_.set(path + "/panel", panel);
  showView(path, pages_);
}

void FakeGnomeWeb::showView(const std::string& path, const FakeAccessibleProgram& namedProcess) {
  FakeObject view;
  view.role = ATSPI_ROLE_FILLER;
  view.children = {namedProcess.uniqueName() + path + "/root"};
  view.listsChildren = false;
  program_.set(path + "/view", view);
}

void FakeGnomeWeb::load(const std::string& path, const std::string& document,
                        const std::string& address, std::uint64_t /*documentStates*/) {
  showPage(pages_, path, document, address);
}

void FakeGnomeWeb::loadElsewhere(const std::string& path, const std::string& address) {
  keepPage(pages_, path);
  showPage(otherPages_, path, path + "/elsewhere", address);
  showView(path, otherPages_);
}

void FakeGnomeWeb::goBack(const std::string& path, const std::string& document,
                          const std::string& address) {
  keepPage(otherPages_, path);
  showPage(pages_, path, document, address);
}

void FakeGnomeWeb::showPage(FakeAccessibleProgram& process, const std::string& path,
                            const std::string& document, const std::string& address) {
  FakeObject page;
  page.role = ATSPI_ROLE_DOCUMENT_WEB;
  page.addressAttribute = "URI";
  page.address = address;
  process.set(document, page);
  FakeObject pane;
  pane.role = ATSPI_ROLE_SCROLL_PANE;
  pane.children = {document};
  process.set(path + "/pane", pane);
  FakeObject root;
  root.role = ATSPI_ROLE_FILLER;
  root.children = {path + "/pane"};
  process.set(path + "/root", root);
}

void FakeGnomeWeb::keepPage(FakeAccessibleProgram& process, const std::string& path) {
  FakeObject root;
  root.role = ATSPI_ROLE_FILLER;
  process.set(path + "/root", root);
}

}  // namespace quorrix::test
