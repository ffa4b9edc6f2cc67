#include "platform/linux/page_reader.h"

#include "platform/linux/chromium_page_reader.h"
#include "platform/linux/firefox_page_reader.h"
#include "platform/linux/gnome_web_page_reader.h"

namespace quorrix {

std::unique_ptr<PageReader> makePageReader(BrowserKind browser, AccessibilityBus& bus,
                                           const AccessibleId& frame) {
  switch (browser) {
    case BrowserKind::Firefox:
      return std::make_unique<FirefoxPageReader>(bus, frame);
    case BrowserKind::GnomeWeb:
      return std::make_unique<GnomeWebPageReader>(bus, frame);
    case BrowserKind::Chromium:
    case BrowserKind::GoogleChrome:
      break;
  }
  return std::make_unique<ChromiumPageReader>(bus, frame);
}

}  // namespace quorrix
