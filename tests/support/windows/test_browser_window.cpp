#include "support/windows/test_browser_window.h"

#include <windows.h>

#include <commctrl.h>

#include <stdexcept>

namespace quorrix::test {
namespace {

constexpr const wchar_t* kFrameClass = L"QuorrixTestBrowser";
constexpr UINT kRunOperation = WM_APP;
constexpr UINT kHang = WM_APP + 1;

HWND toHwnd(WindowHandle window) { return reinterpret_cast<HWND>(window); }

LRESULT CALLBACK frameProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
  if (message == kRunOperation) {
    (*reinterpret_cast<const std::function<void()>*>(parameter))();
    return 1;
  }
  if (message == kHang) {
    reinterpret_cast<std::future<void>*>(parameter)->wait();
    return 0;
  }
  if (message == WM_DESTROY) ::PostQuitMessage(0);
  return ::DefWindowProcW(window, message, wide, parameter);
}

void registerFrameClass() {
  WNDCLASSW description{};
  description.lpfnWndProc = frameProcedure;
  description.hInstance = ::GetModuleHandleW(nullptr);
  description.lpszClassName = kFrameClass;
  ::RegisterClassW(&description);  // fails for the second window, which is harmless
  const INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES};
  ::InitCommonControlsEx(&controls);
}

WindowHandle createWindow(const wchar_t* windowClass, const std::wstring& text, DWORD style,
                          WindowHandle parent) {
  HWND window = ::CreateWindowExW(0, windowClass, text.c_str(), style, 0, 0, 600, 200,
                                  toHwnd(parent), nullptr, ::GetModuleHandleW(nullptr), nullptr);
  if (window == nullptr) throw std::runtime_error("a test window could not be made");
  return reinterpret_cast<WindowHandle>(window);
}

}  // namespace

TestBrowserWindow::TestBrowserWindow(const std::wstring& title) {
  std::promise<void> ready;
  thread_ = std::thread([&] { live(title, ready); });
  try {
    ready.get_future().get();
  } catch (...) {
    thread_.join();
    throw;
  }
}

TestBrowserWindow::~TestBrowserWindow() {
  wakesUp();
  ::PostMessageW(toHwnd(frame_), WM_CLOSE, 0, 0);
  thread_.join();
}

void TestBrowserWindow::live(const std::wstring& title, std::promise<void>& ready) {
  try {
    createControls(title);
  } catch (...) {
    ready.set_exception(std::current_exception());
    return;
  }
  ready.set_value();
  MSG message;
  while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
}

void TestBrowserWindow::createControls(const std::wstring& title) {
  registerFrameClass();
  frame_ = createWindow(kFrameClass, title, WS_OVERLAPPEDWINDOW, kNoWindow);
  const WindowHandle bar =
      createWindow(L"Static", L"the bar around the address box", WS_CHILD | WS_VISIBLE, frame_);
  combo_ = createWindow(L"ComboBox", L"", WS_CHILD | WS_VISIBLE | CBS_DROPDOWN, bar);
  edit_ = reinterpret_cast<WindowHandle>(::GetWindow(toHwnd(combo_), GW_CHILD));
  status_ = createWindow(STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE, frame_);
  ::SetWindowPos(toHwnd(frame_), HWND_TOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void TestBrowserWindow::runThere(const std::function<void()>& operation) {
  ::SendMessageW(toHwnd(frame_), kRunOperation, 0, reinterpret_cast<LPARAM>(&operation));
}

void TestBrowserWindow::shows(const std::wstring& title) {
  runThere([&] { ::SetWindowTextW(toHwnd(frame_), title.c_str()); });
}

void TestBrowserWindow::typeAddress(const std::wstring& address) {
  runThere([&] { ::SetWindowTextW(toHwnd(edit_), address.c_str()); });
}

void TestBrowserWindow::says(const std::wstring& status) {
  runThere([&] { ::SetWindowTextW(toHwnd(status_), status.c_str()); });
}

// Sent messages are handled in order, so nothing sent after this one is answered, even if
// the thread has not yet begun to wait. A posted message could be overtaken.
void TestBrowserWindow::hangs() {
  ::SendNotifyMessageW(toHwnd(frame_), kHang, 0, reinterpret_cast<LPARAM>(&untilAwake_));
}

void TestBrowserWindow::wakesUp() {
  if (!isAwake_) awake_.set_value();
  isAwake_ = true;
}

}  // namespace quorrix::test
