#include "platform/browsers/browser_kind.h"

namespace quorrix {

std::string_view nameOf(BrowserKind kind) {
  switch (kind) {
    case BrowserKind::Firefox:
      return "Firefox";
    case BrowserKind::Chromium:
      return "Chromium";
    case BrowserKind::GoogleChrome:
      return "Google Chrome";
    case BrowserKind::GnomeWeb:
      return "Web";
  }
  return {};
}

}  // namespace quorrix
