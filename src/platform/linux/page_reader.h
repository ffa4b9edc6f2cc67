// Reads the page that one browser window shows: which document it is, and the address
// under which it was committed. Each browser has its own reader.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/browsers/browser_kind.h"
#include "platform/browsers/browser_presentation.h"
#include "platform/linux/inquiry.h"

namespace quorrix {

struct WindowReading {
  std::string name;                 // the window's accessible name, UTF-8; empty when not known
  std::optional<PageReading> page;  // nullopt while the window has no document that can be read
};

class PageReader {
 public:
  PageReader() = default;
  virtual ~PageReader() = default;
  PageReader(const PageReader&) = delete;
  PageReader& operator=(const PageReader&) = delete;

  // Continues the reading. nullopt while answers are missing; the next call then
  // continues. After a result, the next call starts a new reading.
  [[nodiscard]] virtual std::optional<WindowReading> read() = 0;
};

[[nodiscard]] std::unique_ptr<PageReader> makePageReader(BrowserKind browser, AccessibilityBus& bus,
                                                         const AccessibleId& frame);

}  // namespace quorrix
