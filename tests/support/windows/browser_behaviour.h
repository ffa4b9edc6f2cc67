// What today's browsers do on Windows, as the stand-in plays them. The values come from the
// browsers' public sources, not from a real browser. If a real one does something else
// (docs/windows-check.md), change its value here, and the tests tell what follows from it.
#pragma once

#include <windows.h>

#include <oleacc.h>

namespace quorrix::test {

// The defaults are what both browsers do.
struct BrowserBehaviour {
  const wchar_t* windowClass;
  const wchar_t* pageClass;  // of the child window with the page; null if it has no such window
  bool textTellsPrivate;     // the window's text says that it is private, as its name does
  bool mustBeWoken;          // by WM_GETOBJECT with 1 to the page, and by asking for a name
  DWORD wakingTime;          // milliseconds from then until a document has its address

  bool namesShownDocument;      // by NAVRELATION_EMBEDS of the window's object
  bool namesDocumentAfterBack;  // also after Back to a document that was kept in memory
  bool keepsAddressAfterPush;   // when a script changes the address, the document has the old one

  long windowRole = ROLE_SYSTEM_APPLICATION;  // of the object that the window answers with
  long toolBarRole = ROLE_SYSTEM_TOOLBAR;
  long addressBarRole = ROLE_SYSTEM_TEXT;
  long tabRole = ROLE_SYSTEM_PROPERTYPAGE;
  long documentRole = ROLE_SYSTEM_DOCUMENT;
  long stateOfHiddenTab = STATE_SYSTEM_OFFSCREEN;  // and of its document
};

inline constexpr BrowserBehaviour kFirefox{
    .windowClass = L"MozillaWindowClass",
    .pageClass = nullptr,
    .textTellsPrivate = true,
    .mustBeWoken = false,
    .wakingTime = 0,
    .namesShownDocument = true,
    .namesDocumentAfterBack = false,
    .keepsAddressAfterPush = false,
};

// Google Chrome does the same.
inline constexpr BrowserBehaviour kChromium{
    .windowClass = L"Chrome_WidgetWin_1",
    .pageClass = L"Chrome_RenderWidgetHostHWND",
    .textTellsPrivate = false,
    .mustBeWoken = true,
    .wakingTime = 300,
    .namesShownDocument = false,
    .namesDocumentAfterBack = false,
    .keepsAddressAfterPush = true,
};

}  // namespace quorrix::test
