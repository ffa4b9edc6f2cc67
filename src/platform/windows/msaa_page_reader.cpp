#include "platform/windows/msaa_page_reader.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/browsers/shown_address.h"

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

// A document of Firefox that never finishes loading counts as loaded after so many looks,
// and one that stays empty after so many more.
constexpr unsigned kLooksWhileLoading = 4;
constexpr unsigned kLooksWhileEmpty = 20;

// The first object with that role, searched level by level. `isSkipped` is asked about each
// object's role.
template <typename Skipped>
MsaaObject search(const MsaaObject& root, long role, Skipped isSkipped) {
  std::vector<MsaaObject> level{root};
  std::size_t seen = 0;
  for (unsigned depth = 0; depth < kDeepest && !level.empty(); ++depth) {
    std::vector<MsaaObject> next;
    for (const MsaaObject& object : level) {
      for (MsaaObject& child : object.children(kMostChildren)) {
        if (++seen > kMostObjects) return {};
        if ((child.state() & STATE_SYSTEM_INVISIBLE) != 0) continue;
        const long its = child.role();
        if (its == role) return child;
        if (!isSkipped(its)) next.push_back(std::move(child));
      }
    }
    level = std::move(next);
  }
  return {};
}

BOOL CALLBACK findPage(HWND window, LPARAM found) noexcept {
  wchar_t name[64] = L"";
  ::GetClassNameW(window, name, static_cast<int>(std::size(name)));
  if (std::wstring_view(name) != kChromiumPage || !::IsWindowVisible(window)) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

HWND pageOf(HWND frame) {
  HWND page = nullptr;
  ::EnumChildWindows(frame, findPage, reinterpret_cast<LPARAM>(&page));
  return page;
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
  if (!window.root) window.root = MsaaObject::ofWindow(question.window, kPatience);
  if (!window.root) return answer;
  const auto name = window.root.name();
  if (!name) {
    window = {};  // a window may replace its objects
    return answer;
  }
  answer.name = *name;
  if (!question.wantsPage) return answer;
  answer.page = browser_ == BrowserKind::Firefox
                    ? readFirefox(window)
                    : readChromium(question.window, window, answer.name);
  return answer;
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

MsaaObject MsaaPageReader::searchedDocument(Window& window) const {
  MsaaObject& found = window.foundDocument;
  if (found && found.value() && (found.state() & STATE_SYSTEM_INVISIBLE) == 0) return found;
  found = search(window.root, ROLE_SYSTEM_DOCUMENT, [](long role) {
    return role == ROLE_SYSTEM_TOOLBAR || role == ROLE_SYSTEM_MENUBAR ||
           role == ROLE_SYSTEM_MENUPOPUP;
  });
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
  findNewerAddress(window, *loaded, name);
  return PageReading{.document = documentOf(object).id,
                     .address = window.newer.value_or(*loaded),
                     .isComplete = true,
                     .isAddressNewer = window.newer.has_value()};
}

// The bar also shows the address of a page that waits for its server, and was perhaps
// never shown. So an address from the bar counts only with another title, which such a page
// does not have yet.
void MsaaPageReader::findNewerAddress(Window& window, const std::string& loaded,
                                      const std::string& name) const {
  if (loaded != window.loaded) {
    window.loaded = loaded;
    window.newer.reset();
    window.name = name;
  }
  const auto inBar = addressInBar(window);
  if (inBar) {
    auto newer = newerAddress(loaded, *inBar);
    if (newer && newer != window.newer && name == window.name) return;
    window.newer = std::move(newer);
  }
  window.name = name;
}

// nullopt while the user is typing in it.
std::optional<std::string> MsaaPageReader::addressInBar(Window& window) const {
  if (!window.addressBar) {
    const auto isDocument = [](long role) { return role == ROLE_SYSTEM_DOCUMENT; };
    const MsaaObject bar = search(window.root, ROLE_SYSTEM_TOOLBAR, isDocument);
    if (bar) window.addressBar = search(bar, ROLE_SYSTEM_TEXT, isDocument);
    if (!window.addressBar) return std::nullopt;
  }
  const auto text = window.addressBar.value();
  if (!text) window.addressBar = {};
  const bool isBeingEdited = text && (window.addressBar.state() & STATE_SYSTEM_FOCUSED) != 0;
  return isBeingEdited ? std::nullopt : text;
}

MsaaPageReader::Document& MsaaPageReader::documentOf(const MsaaObject& object) {
  const auto known = std::ranges::find_if(
      documents_, [&](const Document& document) { return document.object.isSameAs(object); });
  if (known != documents_.end()) {
    std::rotate(known, known + 1, documents_.end());
    return documents_.back();
  }
  if (documents_.size() == kMostDocuments) documents_.erase(documents_.begin());
  documents_.push_back(
      {.object = object, .id = std::to_string(process_) + ' ' + std::to_string(++nextId_)});
  return documents_.back();
}

}  // namespace quorrix
