// Reads the page of a window of GNOME Web.
//
//   frame
//     panels and fillers
//      panel                  one per tab; that of the selected tab is SHOWING
//        filler               no states; it lists no children, but has one
//          filler             the root: in the process of the page, like everything below it
//             scroll pane
//               document web   attribute URI
#pragma once

#include <map>
#include <vector>

#include "platform/linux/page_reader.h"

namespace quorrix {

class GnomeWebPageReader final : public PageReader {
 public:
  GnomeWebPageReader(AccessibilityBus& bus, AccessibleId frame)
      : frame_(std::move(frame)), search_(bus), inquiry_(bus) {}

  [[nodiscard]] std::optional<WindowReading> read() override;

 private:
  struct View {
    AccessibleId panel;
    AccessibleId filler;
  };
  struct Tab {
    std::optional<AccessibleId> named;  // the root that the view named last
    std::vector<AccessibleId> roots;    // all that it has named, most recently used first
  };
  enum class Step { Missing, Done };

  [[nodiscard]] Step awaitPage();
  [[nodiscard]] Step findView();
  [[nodiscard]] Step descend(std::vector<AccessibleId>& panels, std::vector<View>& empty);
  [[nodiscard]] bool isPage(const std::optional<AccessibleId>& id) const;
  [[nodiscard]] Step readView(WindowReading& reading);
  [[nodiscard]] Step findDocument(Tab& tab, std::optional<AccessibleId>& document);

  AccessibleId frame_;
  Inquiry search_;   // for what is remembered between readings
  Inquiry inquiry_;  // for one reading
  std::optional<View> view_;
  std::vector<View> awaited_;         // views without a page that may get one
  std::map<AccessibleId, Tab> tabs_;  // by the view's filler
  unsigned readingsUntilSearch_ = 0;
  unsigned readingsBetweenSearches_ = 1;
};

}  // namespace quorrix
