// The popup menu of the site tree, "POMenu"; its entries act on the selected site.
#pragma once

#include <QMenu>
#include <functional>
#include <vector>

namespace quorrix {

class SitePopupMenu final : public QMenu {
  Q_OBJECT

 public:
  // What the entries do. An entry without a handler stays disabled.
  struct Handlers {
    std::function<void()> PopUpShowAll_Click;
    std::function<void()> PopUpHideAll_Click;
    std::function<void()> PopUpLaunch_Click;
    std::function<void()> PopUpNotes_Click;
    std::function<void()> PopUpPasswords_Click;
    std::function<void()> PopUpNewPurchase_Click;
    std::function<void()> PopUpPurchases_Click;
  };

  SitePopupMenu(const Handlers& handlers, QWidget* parent);

  // All entries are enabled for a site and disabled for the root.
  void setSiteSelected(bool isSite);

 private:
  std::vector<QAction*> working_;  // the entries that have a handler
};

}  // namespace quorrix
