#include "platform/windows/msaa_page_reader.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/browsers/shown_address.h"
#include "platform/windows/firefox_settings.h"

namespace quorrix {
namespace {

constexpr std::chrono::milliseconds kPatience{2000};
constexpr const wchar_t* kChromiumPage = L"Chrome_RenderWidgetHostHWND";
constexpr LPARAM kWakeUp = 1;

// The most objects of a window, and of each of them, that a search looks at. It never looks
// into a document.
constexpr std::size_t kMostObjects = 200;
constexpr long kMostChildren = 50;
constexpr unsigned kDeepest = 8;

constexpr std::size_t kMostDocuments = 32;

// How long an answer about the history is used.
constexpr std::chrono::milliseconds kHistoryStands{1000};

// When a script changes the address, the title changes at most so much earlier or later.
constexpr std::chrono::milliseconds kTitleLeads{300};
constexpr std::chrono::milliseconds kTitleFollows{2000};

// A document of Firefox that never finishes loading counts as loaded after so many looks,
// and one that stays empty after so many more.
constexpr unsigned kLooksWhileLoading = 4;
constexpr unsigned kLooksWhileEmpty = 20;

// A window in which something was searched in vain is searched again after so many readings.
constexpr unsigned kReadingsBetweenSearches = 50;

// Background tabs are off the screen, and other hidden parts are invisible.
bool isShown(const MsaaObject& object) {
  return (object.state() & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN)) == 0;
}

// The shown objects with that role, searched level by level, outside of the parts of a
// window that hold no page.
std::vector<MsaaObject> search(const MsaaObject& root, long role) {
  std::vector<MsaaObject> found;
  std::vector<MsaaObject> level{root};
  std::size_t seen = 0;
  for (unsigned depth = 0; depth < kDeepest && !level.empty(); ++depth) {
    std::vector<MsaaObject> next;
    for (const MsaaObject& object : level) {
      for (MsaaObject& child : object.children(kMostChildren)) {
        if (++seen > kMostObjects) return found;
        if (!isShown(child)) continue;
        const long its = child.role();
        const bool isSkipped = its == ROLE_SYSTEM_DOCUMENT || its == ROLE_SYSTEM_MENUBAR ||
                               its == ROLE_SYSTEM_MENUPOPUP ||
                               (its == ROLE_SYSTEM_TOOLBAR && role == ROLE_SYSTEM_PROPERTYPAGE);
        if (its == role) {
          found.push_back(std::move(child));
        } else if (!isSkipped) {
          next.push_back(std::move(child));
        }
      }
    }
    level = std::move(next);
  }
  return found;
}

BOOL CALLBACK collectPage(HWND window, LPARAM list) noexcept {
  wchar_t name[64] = L"";
  ::GetClassNameW(window, name, static_cast<int>(std::size(name)));
  if (std::wstring_view(name) != kChromiumPage || !::IsWindowVisible(window)) return TRUE;
  try {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
  } catch (...) {
    return FALSE;
  }
}

// Null if there is not exactly one: a side panel and the developer tools are pages, too.
HWND pageOf(HWND frame) {
  std::vector<HWND> pages;
  ::EnumChildWindows(frame, collectPage, reinterpret_cast<LPARAM>(&pages));
  return pages.size() == 1 ? pages.front() : nullptr;
}

}  // namespace

std::vector<WindowAnswer> MsaaPageReader::read(const std::vector<WindowQuestion>& questions) {
  std::erase_if(windows_, [](const auto& entry) { return !::IsWindow(entry.first); });
  std::vector<WindowAnswer> answers;
  for (const WindowQuestion& question : questions) answers.push_back(readWindow(question));
  return answers;
}

WindowAnswer MsaaPageReader::readWindow(const WindowQuestion& question) {
  WindowAnswer answer{.window = question.window, .name = {}, .page = {}};
  Window& window = windows_[question.window];
  std::optional<std::string> name;
  if (window.root) name = window.root.name();
  if (!name) {  // a window may replace its objects
    window = {};
    window.root = MsaaObject::ofWindow(question.window, kPatience);
    if (window.root) name = window.root.name();
  }
  if (!name) return answer;
  answer.name = *name;
  if (question.processes > 0 && browser_ == BrowserKind::Firefox) {
    answer.remembersHistory = remembersHistory(question.processes);
  }
  if (!question.wantsPage) return answer;
  answer.page = browser_ == BrowserKind::Firefox
                    ? readFirefox(window)
                    : readChromium(question.window, window, answer.name);
  // The page may belong to the name that the window has taken on since.
  if (answer.page && window.root.name() != answer.name) answer.page.reset();
  return answer;
}

// Looking for the profile in use opens its lock, so it is not done in every pass.
std::optional<bool> MsaaPageReader::remembersHistory(std::size_t processes) {
  const Time now = std::chrono::steady_clock::now();
  if (processes != asOfProcesses_ || now >= nextQuestion_) {
    remembers_ = firefoxRemembersHistory(process_, processes);
    asOfProcesses_ = processes;
    nextQuestion_ = now + kHistoryStands;
  }
  return remembers_;
}

// Firefox does not say which document it shows after going back to a page that it kept in
// memory.
std::optional<PageReading> MsaaPageReader::readFirefox(Window& window) {
  MsaaObject object = window.root.embedded();
  if (!object) object = searchedDocument(window);
  if (!object) return std::nullopt;
  const auto address = object.value();
  if (!address || address->empty()) return std::nullopt;
  const bool isBusy = (object.state() & STATE_SYSTEM_BUSY) != 0;
  Document& document = documentOf(object);
  if (!document.isWhole) {
    ++document.looks;
    const bool isEmpty = object.childCount() == 0 && document.looks < kLooksWhileEmpty;
    document.isWhole = !isEmpty && (!isBusy || document.looks >= kLooksWhileLoading);
  }
  return PageReading{.document = document.id,
                     .address = *address,
                     .isComplete = document.isWhole,
                     .isLoading = isBusy};
}

MsaaObject MsaaPageReader::searchedDocument(Window& window) {
  MsaaObject& found = window.foundDocument;
  if (found && found.value() && isShown(found)) return found;
  found = {};
  if (window.readingsUntilSearch > 0) {
    --window.readingsUntilSearch;
    return found;
  }
  // The selected tab is a property page. A document elsewhere, such as in a side bar, is not
  // the page.
  std::vector<MsaaObject> documents;
  for (const MsaaObject& tab : search(window.root, ROLE_SYSTEM_PROPERTYPAGE)) {
    std::ranges::move(search(tab, ROLE_SYSTEM_DOCUMENT), std::back_inserter(documents));
  }
  if (documents.size() == 1) found = documents.front();
  if (!found) window.readingsUntilSearch = kReadingsBetweenSearches;
  return found;
}

// Chromium describes its pages only after both requests, and not at once.
std::optional<PageReading> MsaaPageReader::readChromium(HWND frame, Window& window,
                                                        const std::string& name) {
  const HWND page = pageOf(frame);
  if (page == nullptr) return std::nullopt;
  const MsaaObject object = MsaaObject::ofWindow(page, kPatience);
  const auto loaded = object && object.role() == ROLE_SYSTEM_DOCUMENT
                          ? object.value()
                          : std::optional<std::string>();
  if (!loaded || loaded->empty()) {
    DWORD_PTR ignored = 0;
    ::SendMessageTimeoutW(page, WM_GETOBJECT, 0, kWakeUp, SMTO_ABORTIFHUNG | SMTO_ERRORONEXIT,
                          static_cast<UINT>(kPatience.count()), &ignored);
    if (object) static_cast<void>(object.name());
    return std::nullopt;
  }
  Document& document = documentOf(object);
  const auto inBar = addressInBar(window);
  if (*loaded != document.loaded) {
    document.loaded = *loaded;
    document.newer.reset();
    document.hasAgreed = false;
    document.name = {.text = name};
    document.bar = {.text = inBar.value_or(std::string())};
  }
  follow(document, inBar, name);
  const bool hasBar = static_cast<bool>(window.addressBar);  // not in full screen, for example
  if (hasBar && !document.hasAgreed) return std::nullopt;
  return PageReading{.document = document.id,
                     .address = document.newer.value_or(*loaded),
                     .isComplete = true,
                     .isAddressNewer = document.newer.has_value()};
}

// After a script has changed the address, the document keeps the one under which it was
// loaded. The bar then has the new one, but it also shows the address of a page that waits
// for its server, and was perhaps never shown. So an address from the bar counts only if
// the title changes at about the same time, which such a page does not bring about.
void MsaaPageReader::follow(Document& document, const std::optional<std::string>& inBar,
                            const std::string& name) {
  document.name.see(name);
  if (!inBar) return;
  document.bar.see(*inBar);
  const ShownAddress shown = compareWithBar(document.loaded, *inBar);
  if (shown == ShownAddress::Same) document.newer.reset();
  if (shown != ShownAddress::Newer) {
    document.hasAgreed = true;
    return;
  }
  if (!document.hasAgreed || !document.name.changed || !document.bar.changed) return;
  const auto later = *document.name.changed - *document.bar.changed;
  if (-kTitleLeads <= later && later <= kTitleFollows) {
    document.newer = newerAddress(document.loaded, *inBar);
  }
}

void MsaaPageReader::Changing::see(const std::string& now) {
  if (now == text) return;
  text = now;
  changed = std::chrono::steady_clock::now();
}

// nullopt without a bar, and while the user is typing in it.
std::optional<std::string> MsaaPageReader::addressInBar(Window& window) {
  auto text = window.addressBar ? window.addressBar.value() : std::nullopt;
  if (!text) {
    window.addressBar = searchedBar(window);
    if (window.addressBar) text = window.addressBar.value();
  }
  const bool isBeingEdited = text && (window.addressBar.state() & STATE_SYSTEM_FOCUSED) != 0;
  return isBeingEdited ? std::nullopt : text;
}

MsaaObject MsaaPageReader::searchedBar(Window& window) {
  if (window.readingsUntilSearch > 0) {
    --window.readingsUntilSearch;
    return {};
  }
  for (const MsaaObject& bar : search(window.root, ROLE_SYSTEM_TOOLBAR)) {
    const std::vector<MsaaObject> texts = search(bar, ROLE_SYSTEM_TEXT);
    if (!texts.empty()) return texts.front();
  }
  window.readingsUntilSearch = kReadingsBetweenSearches;
  return {};
}

MsaaPageReader::Document& MsaaPageReader::documentOf(const MsaaObject& object) {
  const auto known = std::ranges::find_if(
      documents_, [&](const Document& document) { return document.object.isSameAs(object); });
  if (known != documents_.end()) {
    std::rotate(known, known + 1, documents_.end());
    return documents_.back();
  }
  if (documents_.size() == kMostDocuments) documents_.erase(documents_.begin());
  Document& document = documents_.emplace_back();
  document.object = object;
  document.id = std::to_string(process_) + ' ' + std::to_string(++nextId_);
  return document;
}

}  // namespace quorrix
