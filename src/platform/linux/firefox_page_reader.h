// Reads the page of a Firefox window.
//
//   frame
//     tool bars, menus, side bar
//     panel, id "tabbrowser-tabpanels"
//      one pane per loaded tab; the selected one has the class "deck-selected"
//         internal frame
//           document web: attribute DocURL
//         internal frame with the developer tools, if they are open
//
// The frame also has an EMBEDS relation to the document, but it appears late, and is lost
// after going Back or Forward to a page that Firefox kept in memory. So the tree is tried
// first, and the relation second. The SHOWING state is of no use: panes of covered
// windows do not have it, and documents keep it for a while after they are left.
#pragma once

#include <vector>

#include "platform/linux/page_reader.h"

namespace quorrix {

class FirefoxPageReader final : public PageReader {
 public:
  FirefoxPageReader(AccessibilityBus& bus, AccessibleId frame)
      : frame_(std::move(frame)), search_(bus), inquiry_(bus) {}

  [[nodiscard]] std::optional<WindowReading> read() override;

 private:
  using Topic = Question::Topic;
  struct Tab {
    AccessibleId pane;
    AccessibleId browser;  // the internal frame
  };
  // Whether a document is an error page; not final while it is loading.
  struct Judgement {
    AccessibleId document;
    bool isErrorPage = false;
    bool hasContent = false;
    bool isFinal = false;
    unsigned looks = 0;
  };
  enum class Step { Missing, Done };

  [[nodiscard]] std::vector<Question> firstQuestions() const;
  [[nodiscard]] Step findTabPanels();
  [[nodiscard]] Step findSelectedTab();
  [[nodiscard]] Step findBrowser(const AccessibleId& pane);
  [[nodiscard]] Step findDocument(std::optional<AccessibleId>& document);
  [[nodiscard]] Step findEmbedded(std::optional<AccessibleId>& document);
  [[nodiscard]] Step readDocument(const AccessibleId& document, WindowReading& reading);
  [[nodiscard]] Step judge(const AccessibleId& document);

  AccessibleId frame_;
  Inquiry search_;   // for what is remembered between readings
  Inquiry inquiry_;  // for one reading
  std::optional<AccessibleId> tabPanels_;
  std::optional<Tab> tab_;
  Judgement judged_;
  bool wasSearched_ = false;  // for the tab, in this reading
  unsigned readingsUntilSearch_ = 0;
};

}  // namespace quorrix
