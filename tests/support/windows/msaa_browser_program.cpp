// A stand-in for one of today's browsers: windows that answer MSAA as Firefox or Chromium
// do. It is Firefox if its file is called firefox.exe, otherwise Chromium. What the two do
// differently is a table, browser_behaviour.h.
//
// It obeys commands on standard input, one on each line, and answers each with a line on
// standard output. The commands change the selected window, at first the only one:
//
//   name TEXT            the accessible name, and the window's text, which lacks " (...)"
//                        at the end
//   accessible-name TEXT the accessible name alone
//   next-name TEXT       the accessible name as soon as a document's address was asked for
//   page URL             a new document
//   push URL             a script changes the address
//   tab N                selects the tab with this document, counted from 1
//   back N               goes back to this document, which the browser kept
//   bar TEXT             the address bar
//   bar-focused 0|1
//   bar-missing 0|1
//   busy 0|1             whether the document is loading
//   relation 0|1         whether the browser says which document it shows
//   behave NAME 0|1      changes the table: stale-address or named-after-back
//   nameless 0|1         whether accName fails
//   minimised 0|1, occluded 0|1, front
//   window, select N, close
//   objects N            as many objects in the document
//   hang MS              the window answers no message for so long
//   hang-inside MS       the next accName answers after so long
//   die-inside           the next accValue ends the program
//   background URL       a tab that is not selected
//   side-bar URL         a document beside the tabs
//   panel                a second page beside the first, as a side panel of Chromium is
//   asked                how often an object of the page was asked for anything
//   addresses            how often a document was asked for its address
//   calls                the number of calls so far
//
// With the option -profile FOLDER it keeps FOLDER\parent.lock locked.

#include <windows.h>

#include <oleacc.h>
#include <shellapi.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/windows/browser_behaviour.h"

namespace {

using quorrix::test::BrowserBehaviour;

constexpr IID kIidAccessible = __uuidof(IAccessible);
constexpr long kEmbeds = 0x1009;
constexpr LPARAM kWakeUp = 1;
constexpr UINT kObey = WM_APP + 1;
constexpr UINT kHang = WM_APP + 2;

BrowserBehaviour behaviour = quorrix::test::kChromium;
bool isAskedToWake = false;
bool wasNameRead = false;
DWORD awakeSince = 0;  // 0 while asleep
DWORD nameHang = 0;
bool diesInside = false;
std::function<void()> afterNextAddress;  // was asked for
unsigned calls = 0;
unsigned askedOfThePage = 0;
unsigned askedForAnAddress = 0;

void wakeIfAsked() {
  if (awakeSince != 0 || !isAskedToWake || !wasNameRead) return;
  awakeSince = GetTickCount() + behaviour.wakingTime;
}

bool isAwake() {
  return !behaviour.mustBeWoken ||
         (awakeSince != 0 && static_cast<int>(GetTickCount() - awakeSince) >= 0);
}

std::wstring wide(const std::string& utf8) {
  std::wstring text(utf8.size() + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(),
                          static_cast<int>(text.size()))));
  return text;
}

#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // as COM's interfaces are
#endif

class Object final : public IAccessible {
 public:
  explicit Object(long role) : role_(role) {}

  std::wstring name;
  std::wstring value;
  long state = 0;
  bool isNameless = false;
  bool isOfThePage = false;
  Object* embedded = nullptr;
  std::vector<Object*> children;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != kIidAccessible) return E_NOINTERFACE;
    *object = static_cast<IAccessible*>(this);
    AddRef();
    return S_OK;
  }
  // Objects live as long as the program.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* text) override {
    count();
    if (nameHang > 0) Sleep(std::exchange(nameHang, 0));
    wasNameRead = true;
    wakeIfAsked();
    if (isNameless) return E_FAIL;
    *text = SysAllocString(target(child).name.c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* text) override {
    count();
    if (diesInside) TerminateProcess(GetCurrentProcess(), 1);
    const bool isDocument = role_ == behaviour.documentRole;
    if (isDocument) ++askedForAnAddress;
    if (isDocument && afterNextAddress) std::exchange(afterNextAddress, nullptr)();
    const bool isHidden = isDocument && !isAwake();
    *text = SysAllocString(isHidden ? L"" : target(child).value.c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    count();
    role->vt = VT_I4;
    role->lVal = target(child).role_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* result) override {
    count();
    result->vt = VT_I4;
    result->lVal = target(child).state;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(long* number) override {
    count();
    *number = static_cast<long>(children.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
    count();
    *object = &target(child);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT, VARIANT* result) override {
    count();
    result->vt = VT_EMPTY;
    if (direction != kEmbeds || embedded == nullptr) return E_FAIL;
    result->vt = VT_DISPATCH;
    result->pdispVal = embedded;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch**) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, long*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE accSelect(long, VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE accLocation(long*, long*, long*, long*, VARIANT) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE accHitTest(long, long, VARIANT*) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

 private:
  void count() const {
    ++calls;
    if (isOfThePage) ++askedOfThePage;
  }

  Object& target(const VARIANT& child) {
    const bool isChild = child.vt == VT_I4 && child.lVal > 0 &&
                         static_cast<std::size_t>(child.lVal) <= children.size();
    return isChild ? *children[static_cast<std::size_t>(child.lVal) - 1] : *this;
  }

  long role_;
};

struct Window {
  HWND frame = nullptr;
  HWND page = nullptr;
  Object* root = new Object(behaviour.windowRole);
  Object* toolBar = new Object(behaviour.toolBarRole);
  Object* bar = new Object(behaviour.addressBarRole);
  Object* tab = new Object(behaviour.tabRole);
  std::vector<Object*> documents;
  bool hasRelation = true;
};

std::vector<std::unique_ptr<Window>> windows;
std::size_t selected = 0;

Window* windowOf(HWND handle) {
  for (const auto& window : windows) {
    if (window->frame == handle || window->page == handle) return window.get();
  }
  return nullptr;
}

void show(Window& window, Object* document) {
  for (Object* const other : window.documents) {
    if (other != document) other->state = behaviour.stateOfHiddenTab;
  }
  document->state = 0;
  window.tab->children = {document};
  window.root->embedded = window.hasRelation && behaviour.namesShownDocument ? document : nullptr;
}

Object* shown(const Window& window) {
  return window.tab->children.empty() ? nullptr : window.tab->children.front();
}

LRESULT CALLBACK answer(HWND handle, UINT message, WPARAM first, LPARAM second);

HWND makeWindow(const wchar_t* className, const wchar_t* text, DWORD style, HWND parent) {
  WNDCLASSW description{};
  description.lpfnWndProc = answer;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = className;
  RegisterClassW(&description);
  return CreateWindowW(className, text, style | WS_VISIBLE, 0, 0, 400, 300, parent, nullptr,
                       description.hInstance, nullptr);
}

void addWindow() {
  windows.push_back(std::make_unique<Window>());
  Window& window = *windows.back();
  window.root->children = {window.toolBar, window.tab};
  window.toolBar->children = {window.bar};
  window.frame = makeWindow(behaviour.windowClass, L"", WS_OVERLAPPEDWINDOW, nullptr);
  if (behaviour.pageClass != nullptr) {
    window.page = makeWindow(behaviour.pageClass, L"", WS_CHILD, window.frame);
  }
  selected = windows.size() - 1;
}

std::wstring windowText(const std::wstring& name) {
  const std::size_t added = name.rfind(L" (");
  const bool isCut = !behaviour.textTellsPrivate && added != std::wstring::npos;
  return isCut ? name.substr(0, added) : name;
}

std::string behave(const std::string& row) {
  const bool isOn = row.ends_with(" 1");
  const std::string name = row.substr(0, row.find(' '));
  if (name == "stale-address") {
    behaviour.keepsAddressAfterPush = isOn;
  } else if (name == "named-after-back") {
    behaviour.namesDocumentAfterBack = isOn;
  } else {
    return "unknown row";
  }
  return "done";
}

std::string obey(const std::string& line) {
  const std::size_t blank = line.find(' ');
  const std::string command = line.substr(0, blank);
  const std::string text = blank == std::string::npos ? "" : line.substr(blank + 1);
  const bool isOn = text == "1";
  if (command == "asked") return std::to_string(askedOfThePage);
  if (command == "addresses") return std::to_string(askedForAnAddress);
  if (command == "calls") return std::to_string(calls);
  if (command == "window") {
    addWindow();
    return "done";
  }
  if (command == "behave") return behave(text);
  if (command == "select") {
    selected = std::stoul(text) - 1;
    return "done";
  }
  Window& window = *windows.at(selected);
  Object* const document = shown(window);
  if (command == "name") {
    window.root->name = wide(text);
    SetWindowTextW(window.frame, windowText(window.root->name).c_str());
  } else if (command == "accessible-name") {
    window.root->name = wide(text);
  } else if (command == "next-name") {
    afterNextAddress = [root = window.root, text] { root->name = wide(text); };
  } else if (command == "page") {
    auto* const made = new Object(behaviour.documentRole);
    made->value = wide(text);
    window.documents.push_back(made);
    window.bar->value = made->value;
    show(window, made);
  } else if (command == "push") {
    window.bar->value = wide(text);
    if (!behaviour.keepsAddressAfterPush) document->value = wide(text);
  } else if (command == "tab" || command == "back") {
    show(window, window.documents.at(std::stoul(text) - 1));
    window.bar->value = shown(window)->value;
    if (command == "back" && !behaviour.namesDocumentAfterBack) window.root->embedded = nullptr;
  } else if (command == "bar") {
    window.bar->value = wide(text);
  } else if (command == "bar-missing") {
    window.toolBar->children.assign(isOn ? 0 : 1, window.bar);
  } else if (command == "bar-focused") {
    window.bar->state = isOn ? STATE_SYSTEM_FOCUSED : 0;
  } else if (command == "busy") {
    document->state = isOn ? STATE_SYSTEM_BUSY : 0;
  } else if (command == "relation") {
    window.hasRelation = isOn;
    show(window, document);
  } else if (command == "nameless") {
    window.root->isNameless = isOn;
  } else if (command == "minimised") {
    ShowWindow(window.frame, isOn ? SW_MINIMIZE : SW_RESTORE);
  } else if (command == "occluded") {
    ShowWindow(window.page, isOn ? SW_HIDE : SW_SHOW);
  } else if (command == "front") {
    SetWindowPos(window.frame, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  } else if (command == "close") {
    DestroyWindow(window.frame);
  } else if (command == "objects") {
    for (long i = 0; i < std::stol(text); ++i) {
      document->children.push_back(new Object(ROLE_SYSTEM_STATICTEXT));
      document->children.back()->isOfThePage = true;
    }
  } else if (command == "background" || command == "side-bar") {
    const bool isTab = command == "background";
    auto* const other = new Object(behaviour.documentRole);
    auto* const around = new Object(isTab ? behaviour.tabRole : ROLE_SYSTEM_GROUPING);
    other->value = wide(text);
    around->children = {other};
    if (isTab) around->state = other->state = behaviour.stateOfHiddenTab;
    window.root->children.insert(window.root->children.begin(), around);
  } else if (command == "panel") {
    makeWindow(behaviour.pageClass, L"", WS_CHILD, window.frame);
  } else if (command == "hang") {
    PostMessageW(window.frame, kHang, static_cast<WPARAM>(std::stoul(text)), 0);
  } else if (command == "hang-inside") {
    nameHang = std::stoul(text);
  } else if (command == "die-inside") {
    diesInside = true;
  } else {
    return "unknown command";
  }
  return "done";
}

LRESULT object(const Window& window, HWND handle, WPARAM how, LPARAM id) {
  const bool isPage = handle == window.page;
  if (isPage && id == kWakeUp) {
    isAskedToWake = true;
    wakeIfAsked();
    return 0;
  }
  if (static_cast<LONG>(id) != OBJID_CLIENT) return 0;
  Object* const asked = isPage ? shown(window) : window.root;
  return asked == nullptr ? 0 : LresultFromObject(kIidAccessible, how, asked);
}

LRESULT CALLBACK answer(HWND handle, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_GETOBJECT) {
    const Window* const window = windowOf(handle);
    return window == nullptr ? 0 : object(*window, handle, first, second);
  }
  if (message == kObey) {
    auto& text = *reinterpret_cast<std::string*>(second);
    text = obey(text);
    return 0;
  }
  if (message == kHang) {
    Sleep(static_cast<DWORD>(first));
    return 0;
  }
  return DefWindowProcW(handle, message, first, second);
}

HANDLE lockProfile() {
  int count = 0;
  const LPWSTR* const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i + 1 < count; ++i) {
    if (std::wstring(arguments[i]) != L"-profile") continue;
    return CreateFileW((std::wstring(arguments[i + 1]) + L"\\parent.lock").c_str(),
                       GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
  }
  return INVALID_HANDLE_VALUE;
}

}  // namespace

int main() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  if (std::wstring(path).ends_with(L"\\firefox.exe")) behaviour = quorrix::test::kFirefox;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const HANDLE lock = lockProfile();
  addWindow();
  // Commands still reach the program after its first window was closed.
  const HWND control = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                     GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&answer));
  std::thread listener([control] {
    for (std::string line; std::getline(std::cin, line);) {
      if (line.ends_with('\r')) line.pop_back();
      SendMessageW(control, kObey, 0, reinterpret_cast<LPARAM>(&line));
      std::cout << line << std::endl;
    }
    ExitProcess(0);
  });
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  CloseHandle(lock);
  listener.detach();
  return 0;
}
