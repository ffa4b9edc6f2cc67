// What today's browsers do on Windows, as the stand-in plays them. The values come from the
// browsers' public sources, not from a real browser. If a real one does something else
// (docs/windows-check.md), change its value here, and the tests tell what follows from it.
#pragma once

#include <windows.h>

#include <oleacc.h>

namespace quorrix::test {

struct BrowserBehaviour {
  const wchar_t* windowClass;
  const wchar_t* pageClass;  // of the child window that shows the page; null if there is none
  bool textTellsPrivate;     // the window's text says that it is private, as its name does

  long windowRole;  // of the object that the window answers with
  long toolBarRole;
  long addressBarRole;
  long tabRole;
  long documentRole;
  long stateOfHiddenTab;  // and of its document

  bool mustBeWoken;  // by WM_GETOBJECT with 1 to the page and a name asked for
  DWORD wakingTime;  // milliseconds from then until a document has its address

  bool namesShownDocument;      // by NAVRELATION_EMBEDS of the window's object
  bool namesDocumentAfterBack;  // also after Back to a document that was kept in memory
  bool keepsAddressAfterPush;   // when a script changes the address, the document has the old one
};

inline constexpr BrowserBehaviour kFirefox{
    .windowClass = L"MozillaWindowClass",
    .pageClass = nullptr,
    .textTellsPrivate = true,
    .windowRole = ROLE_SYSTEM_APPLICATION,
    .toolBarRole = ROLE_SYSTEM_TOOLBAR,
    .addressBarRole = ROLE_SYSTEM_TEXT,
    .tabRole = ROLE_SYSTEM_PROPERTYPAGE,
    .documentRole = ROLE_SYSTEM_DOCUMENT,
    .stateOfHiddenTab = STATE_SYSTEM_OFFSCREEN,
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
    .windowRole = ROLE_SYSTEM_APPLICATION,
    .toolBarRole = ROLE_SYSTEM_TOOLBAR,
    .addressBarRole = ROLE_SYSTEM_TEXT,
    .tabRole = ROLE_SYSTEM_PROPERTYPAGE,
    .documentRole = ROLE_SYSTEM_DOCUMENT,
    .stateOfHiddenTab = STATE_SYSTEM_OFFSCREEN,
    .mustBeWoken = true,
    .wakingTime = 300,
    .namesShownDocument = false,
    .namesDocumentAfterBack = false,
    .keepsAddressAfterPush = true,
};

}  // namespace quorrix::test
