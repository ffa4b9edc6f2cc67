// Reads the names and pages of the windows of one browser process, through MSAA. Use it
// only on a QuestionThread.
//
// The objects of a window are kept from one reading to the next, because fetching them
// takes longer than asking them.
#pragma once

#include <windows.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/browsers/browser_kind.h"
#include "platform/browsers/browser_presentation.h"
#include "platform/windows/msaa_object.h"

namespace quorrix {

struct WindowQuestion {
  HWND window = nullptr;
  bool wantsPage = false;  // else only the name
  // Firefox only: how many Firefox processes have windows, if it is wanted whether this one
  // remembers history.
  std::size_t processes = 0;
};

struct WindowAnswer {
  HWND window = nullptr;
  std::string name;  // the accessible name, UTF-8; empty if it could not be read
  // nullopt if the page was not asked for or cannot be read, or if the name changed while it was
  // read.
  std::optional<PageReading> page;
  std::optional<bool> remembersHistory = std::nullopt;
};

class MsaaPageReader {
 public:
  MsaaPageReader(BrowserKind browser, DWORD process) : browser_(browser), process_(process) {}

  [[nodiscard]] std::vector<WindowAnswer> read(const std::vector<WindowQuestion>& questions);

 private:
  using Time = std::chrono::steady_clock::time_point;

  // A text, and when it last changed.
  struct Changing {
    std::string text;
    std::optional<Time> changed = std::nullopt;

    void see(const std::string& now);
  };

  // A document that was read before, so that it is recognised again.
  struct Document {
    MsaaObject object;
    std::string id;
    unsigned looks = 0;  // Firefox's
    bool isWhole = false;

    // Chromium's.
    std::string loaded;                // the address of the document
    std::optional<std::string> newer;  // the address that replaced it
    bool hasAgreed = false;            // the bar has not shown another address at some time
    Changing name;                     // of the window, while it shows the document
    Changing bar;                      // its text
  };
  struct Window {
    MsaaObject root;
    MsaaObject foundDocument;  // by a search, where Firefox does not say which one is shown
    MsaaObject addressBar;     // Chromium's
    unsigned readingsUntilSearch = 0;
  };

  [[nodiscard]] WindowAnswer readWindow(const WindowQuestion& question);
  [[nodiscard]] std::optional<PageReading> readFirefox(Window& window);
  [[nodiscard]] static MsaaObject searchedDocument(Window& window);
  [[nodiscard]] std::optional<PageReading> readChromium(HWND frame, Window& window,
                                                        const std::string& name);
  static void follow(Document& document, const std::optional<std::string>& inBar,
                     const std::string& name);
  [[nodiscard]] static std::optional<std::string> addressInBar(Window& window);
  [[nodiscard]] static MsaaObject searchedBar(Window& window);
  [[nodiscard]] Document& documentOf(const MsaaObject& object);

  [[nodiscard]] std::optional<bool> remembersHistory(std::size_t processes);

  BrowserKind browser_;
  DWORD process_;
  // Of the last question about the history.
  std::optional<bool> remembers_;
  std::size_t asOfProcesses_ = 0;
  Time nextQuestion_;
  std::map<HWND, Window> windows_;
  std::vector<Document> documents_;  // the latest last
  unsigned nextId_ = 0;
};

}  // namespace quorrix
