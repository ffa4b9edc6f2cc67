// Reads the page of a window of Chromium or of a browser based on it.
//
//   frame                                     EMBEDS the document that loaded last, which
//                                             may be that of a side panel
//     ...
//       panel, class MultiContentsView
//         panel, class ContentsContainerView  two: the sides of a split view
//           document web                      attribute URI
//           panel, class MultiContentsViewMiniToolbar
//             static                          its Description is the committed address
//
// The document's own address stays the one that it was loaded with, even after
// history.pushState, and is empty until the page has a body. The address in the (mostly
// hidden) small tool bar is always the last committed one. That tool bar is internal to
// the browser: without it, the document's address is used.
//
// While the view is not split, either side may be the one in use. In a split view both
// tool bars are SHOWING, but the label in that of the active side is not.
#pragma once

#include <vector>

#include "platform/linux/page_reader.h"

namespace quorrix {

class ChromiumPageReader final : public PageReader {
 public:
  ChromiumPageReader(AccessibilityBus& bus, AccessibleId frame)
      : frame_(std::move(frame)), search_(bus), inquiry_(bus) {}

  [[nodiscard]] std::optional<WindowReading> read() override;

 private:
  using Topic = Question::Topic;

  // One side of the window.
  struct Side {
    AccessibleId container;
    AccessibleId toolBar;
    AccessibleId label;
    std::vector<AccessibleId> children = {};              // of the container, as last seen
    std::optional<AccessibleId> document = std::nullopt;  // the page among them
  };
  enum class Step { Missing, Done };

  [[nodiscard]] std::vector<Question> firstQuestions() const;
  [[nodiscard]] Step findDocument();
  [[nodiscard]] Step findSides();
  [[nodiscard]] Step findView(AccessibleId& view);
  [[nodiscard]] Step findSide(const AccessibleId& container);
  [[nodiscard]] Step chooseSide();
  [[nodiscard]] Step lookForSplit();
  [[nodiscard]] Step findShowingSide();
  [[nodiscard]] bool isShowing(const AccessibleId& object) const;
  [[nodiscard]] Step documentIn(Side& side);
  [[nodiscard]] Step readPage(WindowReading& reading);
  [[nodiscard]] Step childrenOf(const AccessibleId& parent, Topic topic,
                                std::vector<Question>& questions);

  AccessibleId frame_;
  Inquiry search_;   // for what is remembered between readings
  Inquiry inquiry_;  // for one reading
  std::vector<Side> sides_;
  std::size_t side_ = 0;                   // the one in use
  std::optional<std::size_t> activeSide_;  // in a split view
  std::optional<AccessibleId> document_;   // that the frame embeds
  std::optional<AccessibleId> container_;  // of that document, as last known
  std::optional<AccessibleId> shown_;      // the document of the side in use
  unsigned readings_ = 0;                  // since the sides were searched for
  unsigned readingsUntilSearch_ = 0;
};

}  // namespace quorrix
