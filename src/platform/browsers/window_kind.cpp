#include "platform/browsers/window_kind.h"

#include "platform/browsers/browser_titles.h"

namespace quorrix {

// A new private window of Firefox may have only the browser's name at first; see
// judgeFirefox().
bool isOrdinaryName(BrowserKind browser, const std::string& name) {
  return browser == BrowserKind::GnomeWeb || titleKind(browser, name) != TitleKind::NotOrdinary;
}

WindowKind judgeGnomeWeb(const WindowFindings& findings, std::uint32_t process,
                         std::optional<std::uint32_t> ordinaryProcess,
                         std::chrono::milliseconds age) {
  if (!findings.isFrame) return WindowKind::Other;
  if (findings.name.empty() || !ordinaryProcess || process == 0) return WindowKind::Unsettled;
  if (process == ordinaryProcess) return WindowKind::Ordinary;
  return age < WindowKinds::kNaming ? WindowKind::Unsettled : WindowKind::Private;
}

WindowKind WindowKinds::judge(BrowserKind browser, const std::string& process,
                              const WindowFindings& findings, std::chrono::milliseconds age) {
  if (!findings.isFrame) return WindowKind::Other;
  if (findings.name.empty()) return WindowKind::Unsettled;
  if (!isOrdinaryName(browser, findings.name)) {
    const bool isFinal = age >= kNaming && !findings.hasOrdinaryMark;
    return isFinal ? WindowKind::Private : WindowKind::Unsettled;
  }
  if (!findings.hasBars) return WindowKind::Unsettled;
  if (findings.hasPrivateMark) return WindowKind::Private;
  // A Chromium window without the mark is a popup or an app. Their names identify private
  // ones in every language, from the first moment.
  return browser == BrowserKind::Firefox ? judgeFirefox(process, findings, age)
                                         : WindowKind::Ordinary;
}

bool wantsHistory(BrowserKind browser, const WindowFindings& findings) {
  return browser == BrowserKind::Firefox && findings.isMain && !findings.hasPrivateMark &&
         !findings.canEndSession;
}

// The windows of a Firefox that never remembers history have ordinary names. They lack
// every mark; in some versions they have the button that ends the session. A user can
// remove the ordinary mark from the tool bar, so a main window without it is ordinary
// only if the settings say so. Popups have no marks and are judged by their process.
WindowKind WindowKinds::judgeFirefox(const std::string& process, const WindowFindings& findings,
                                     std::chrono::milliseconds age) {
  const bool isNew = age < kNaming;
  if (findings.canEndSession) {
    // A new private window has this button, and for a moment an ordinary name.
    if (isNew) return WindowKind::Unsettled;
    remembers_[process] = false;
    return WindowKind::Private;
  }
  // The windows of a Firefox that was started with --private have the ordinary mark.
  if (findings.remembersHistory == false) {
    remembers_[process] = false;
    return WindowKind::Private;
  }
  if (findings.hasOrdinaryMark) {
    remembers_.try_emplace(process, true);
    return WindowKind::Ordinary;
  }
  if (findings.remembersHistory == true) remembers_.try_emplace(process, true);
  const auto known = remembers_.find(process);
  if (known != remembers_.end() && !known->second) return WindowKind::Private;
  // A private window may have this name in its first moments.
  if (isNew && titleKind(BrowserKind::Firefox, findings.name) == TitleKind::BrowserNameAlone) {
    return WindowKind::Unsettled;
  }
  const bool isRemembered =
      findings.isMain ? findings.remembersHistory == true : known != remembers_.end();
  return isRemembered ? WindowKind::Ordinary : WindowKind::Unsettled;
}

}  // namespace quorrix
