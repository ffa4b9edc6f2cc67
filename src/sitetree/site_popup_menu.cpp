#include "sitetree/site_popup_menu.h"

namespace quorrix {
namespace {

struct Entry {
  const char* name;  // null: a separator
  const char* caption;
  std::function<void()> SitePopupMenu::Handlers::*handler;
  QKeyCombination keys = {};  // of the tree, for the same action
};

constexpr Entry kSeparator = {nullptr, nullptr, nullptr};

constexpr Entry kEntries[] = {
    {"PopUpShowAll", "Show All", &SitePopupMenu::Handlers::PopUpShowAll_Click},
    {"PopUpHideAll", "Hide All", &SitePopupMenu::Handlers::PopUpHideAll_Click},
    kSeparator,
    {"PopUpLaunch", "Link to in Browser", &SitePopupMenu::Handlers::PopUpLaunch_Click,
     Qt::Key_Return},
    kSeparator,
    {"PopUpNotes", "Notes...", &SitePopupMenu::Handlers::PopUpNotes_Click},
    {"PopUpPasswords", "User ID, Password...", &SitePopupMenu::Handlers::PopUpPasswords_Click},
    kSeparator,
    {"PopUpNewPurchase", "New Purchase...", &SitePopupMenu::Handlers::PopUpNewPurchase_Click},
    {"PopUpPurchases", "Purchases...", &SitePopupMenu::Handlers::PopUpPurchases_Click},
};

}  // namespace

SitePopupMenu::SitePopupMenu(const Handlers& handlers, QWidget* parent) : QMenu(parent) {
  setObjectName(QStringLiteral("POMenu"));
  for (const Entry& entry : kEntries) {
    if (entry.name == nullptr) {
      addSeparator();
      continue;
    }
    QAction* const action = addAction(QString::fromLatin1(entry.caption));
    action->setObjectName(QString::fromLatin1(entry.name));
    action->setEnabled(false);
    // Only displayed beside the caption: the shortcuts of a menu that is part of no other
    // menu or menu bar have no effect.
    if (entry.keys != QKeyCombination()) action->setShortcut(entry.keys);
    if (const auto& handler = handlers.*entry.handler) {
      connect(action, &QAction::triggered, this, [handler] { handler(); });
      working_.push_back(action);
    }
  }
}

void SitePopupMenu::setSiteSelected(bool isSite) {
  for (QAction* const action : working_) action->setEnabled(isSite);
}

}  // namespace quorrix
