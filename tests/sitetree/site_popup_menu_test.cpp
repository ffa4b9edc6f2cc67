#include "sitetree/site_popup_menu.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

const QStringList kAllEntries = {
    QStringLiteral("PopUpShowAll"),   QStringLiteral("PopUpHideAll"),
    QStringLiteral("PopUpLaunch"),    QStringLiteral("PopUpNotes"),
    QStringLiteral("PopUpPasswords"), QStringLiteral("PopUpNewPurchase"),
    QStringLiteral("PopUpPurchases"),
};

class SitePopupMenuTest : public testing::Test {
 protected:
  // Every entry records its name when it is chosen.
  SitePopupMenu::Handlers notingHandlers() {
    const auto note = [this](const char* name) {
      return [this, name] { chosen_ << QString::fromLatin1(name); };
    };
    return {.PopUpShowAll_Click = note("PopUpShowAll"),
            .PopUpHideAll_Click = note("PopUpHideAll"),
            .PopUpLaunch_Click = note("PopUpLaunch"),
            .PopUpNotes_Click = note("PopUpNotes"),
            .PopUpPasswords_Click = note("PopUpPasswords"),
            .PopUpNewPurchase_Click = note("PopUpNewPurchase"),
            .PopUpPurchases_Click = note("PopUpPurchases")};
  }

  static QStringList enabledEntries(const SitePopupMenu& menu) {
    QStringList names;
    for (const QAction* const action : menu.actions()) {
      if (!action->isSeparator() && action->isEnabled()) names << action->objectName();
    }
    return names;
  }

  static void choose(const SitePopupMenu& menu, const QString& name) {
    auto* const action = menu.findChild<QAction*>(name);
    ASSERT_NE(action, nullptr) << name.toStdString();
    action->trigger();
  }

  QStringList chosen_;
};

using SitePopupMenuEntries = SitePopupMenuTest;

TEST_F(SitePopupMenuEntries, StandInTheirOrderWithTheirCaptions) {
  const SitePopupMenu menu(notingHandlers(), nullptr);
  QStringList lines;
  for (const QAction* const action : menu.actions()) {
    lines << (action->isSeparator() ? QStringLiteral("-")
                                    : action->objectName() + QLatin1Char('|') + action->text());
  }
  EXPECT_EQ(menu.objectName(), QStringLiteral("POMenu"));
  EXPECT_EQ(lines, QStringList({
                       QStringLiteral("PopUpShowAll|Show All"),
                       QStringLiteral("PopUpHideAll|Hide All"),
                       QStringLiteral("-"),
                       QStringLiteral("PopUpLaunch|Link to in Browser"),
                       QStringLiteral("-"),
                       QStringLiteral("PopUpNotes|Notes..."),
                       QStringLiteral("PopUpPasswords|User ID, Password..."),
                       QStringLiteral("-"),
                       QStringLiteral("PopUpNewPurchase|New Purchase..."),
                       QStringLiteral("PopUpPurchases|Purchases..."),
                   }));
}

TEST_F(SitePopupMenuEntries, AreAllEnabledForASite) {
  SitePopupMenu menu(notingHandlers(), nullptr);
  menu.setSiteSelected(true);
  EXPECT_EQ(enabledEntries(menu), kAllEntries);
}

TEST_F(SitePopupMenuEntries, AreAllDisabledForTheRoot) {
  SitePopupMenu menu(notingHandlers(), nullptr);
  EXPECT_EQ(enabledEntries(menu), QStringList());
  menu.setSiteSelected(true);
  menu.setSiteSelected(false);
  EXPECT_EQ(enabledEntries(menu), QStringList());
}

TEST_F(SitePopupMenuEntries, StayDisabledAsLongAsTheyDoNothing) {
  SitePopupMenu::Handlers handlers;
  handlers.PopUpShowAll_Click = [] {};
  handlers.PopUpNotes_Click = [] {};
  SitePopupMenu menu(handlers, nullptr);
  menu.setSiteSelected(true);
  EXPECT_EQ(enabledEntries(menu),
            QStringList({QStringLiteral("PopUpShowAll"), QStringLiteral("PopUpNotes")}));
}

TEST_F(SitePopupMenuEntries, CallTheirOwnHandler) {
  SitePopupMenu menu(notingHandlers(), nullptr);
  menu.setSiteSelected(true);
  for (const QString& name : kAllEntries) choose(menu, name);
  EXPECT_EQ(chosen_, kAllEntries);
}

TEST_F(SitePopupMenuEntries, CallNothingForTheRoot) {
  SitePopupMenu menu(notingHandlers(), nullptr);
  menu.setSiteSelected(false);
  for (const QString& name : kAllEntries) choose(menu, name);
  EXPECT_EQ(chosen_, QStringList());
}

}  // namespace
}  // namespace quorrix
