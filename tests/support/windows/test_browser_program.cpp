// A program with a window like a browser's, for the tests of the whole program: a title
// that ends in "Netscape", an address box that is the edit of a combo box, and a status
// bar. It loads nothing. A key typed into it makes it show what a browser would:
//
//   Return   "Connect: contacting host"
//   F5       "42% of page"
//   Escape   "Document: Done"
//   F12      nothing more: it hangs from then on
#include <windows.h>

#include <commctrl.h>

namespace {

struct Key {
  WPARAM key;
  const wchar_t* status;
};

constexpr Key kKeys[] = {
    {VK_RETURN, L"Connect: contacting host"},
    {VK_F5, L"42% of page"},
    {VK_ESCAPE, L"Document: Done"},
};

constexpr int kWidth = 500;
constexpr int kHeight = 160;

HWND addressBox = nullptr;

LRESULT CALLBACK frameProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
  if (message == WM_DESTROY) ::PostQuitMessage(0);
  if (message == WM_SETFOCUS) ::SetFocus(addressBox);
  return ::DefWindowProcW(window, message, wide, parameter);
}

HWND createChild(HWND parent, const wchar_t* windowClass, DWORD style, int height) {
  return ::CreateWindowExW(0, windowClass, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, kWidth, height,
                           parent, nullptr, ::GetModuleHandleW(nullptr), nullptr);
}

const wchar_t* statusAfter(const MSG& message) {
  if (message.message != WM_KEYDOWN) return nullptr;
  for (const Key& row : kKeys) {
    if (row.key == message.wParam) return row.status;
  }
  return nullptr;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
  const INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES};
  ::InitCommonControlsEx(&controls);
  WNDCLASSW description{};
  description.lpfnWndProc = frameProcedure;
  description.hInstance = instance;
  description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  description.lpszClassName = L"QuorrixTestBrowser";
  ::RegisterClassW(&description);

  HWND frame =
      ::CreateWindowExW(0, description.lpszClassName, L"A page - Netscape", WS_OVERLAPPEDWINDOW, 0,
                        0, kWidth, kHeight, nullptr, nullptr, instance, nullptr);
  HWND bar = createChild(frame, L"Static", 0, kHeight / 4);
  HWND combo = createChild(bar, L"ComboBox", CBS_DROPDOWN | CBS_AUTOHSCROLL, kHeight / 2);
  addressBox = ::GetWindow(combo, GW_CHILD);
  HWND status = createChild(frame, STATUSCLASSNAMEW, 0, 0);
  ::ShowWindow(frame, SW_SHOWNORMAL);
  ::SetFocus(addressBox);

  MSG message;
  while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (message.message == WM_KEYDOWN && message.wParam == VK_F12) ::Sleep(INFINITE);
    if (const wchar_t* text = statusAfter(message)) {
      ::SetWindowTextW(status, text);
      continue;
    }
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
  return 0;
}
