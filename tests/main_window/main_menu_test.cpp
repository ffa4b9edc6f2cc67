#include "main_window/main_menu.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "main_window/main_form_stage.h"

namespace quorrix {
namespace {

using test::MainFormStage;

// One line per item, "name|caption"; the items of a menu are indented by a blank.
QStringList linesOf(const QList<QAction*>& actions, const QString& indent = {}) {
  QStringList lines;
  for (const QAction* const action : actions) {
    const QString caption = action->isSeparator() ? QStringLiteral("-") : action->text();
    lines << indent + action->objectName() + QLatin1Char('|') + caption;
    if (action->menu() != nullptr) {
      lines << linesOf(action->menu()->actions(), indent + QLatin1Char(' '));
    }
  }
  return lines;
}

TEST(MainMenu, HoldsItsItemsInTheirOrder) {
  MainFormStage stage;
  EXPECT_EQ(linesOf(stage.form.menuBar()->actions()),
            QStringList({
                QStringLiteral("FileMenu|&File"),
                QStringLiteral(" FileStartTrack|Start &Tracking"),
                QStringLiteral(" FileStopTrack|&Stop Tracking"),
                QStringLiteral(" FileSep2|-"),
                QStringLiteral(" FileSearch|Search Dis&play..."),
                QStringLiteral(" FileSep3|-"),
                QStringLiteral(" FileDelete|&Delete Selected Sites"),
                QStringLiteral(" FileClear|&Clear Display"),
                QStringLiteral(" FileSep4|-"),
                QStringLiteral(" FileArchiveTop|A&rchive"),
                QStringLiteral("  FileArchive|&Archive Sites..."),
                QStringLiteral("  FileLoadArchive|&Load Sites Archive..."),
                QStringLiteral("  FileDeleteArchive|&Delete Sites Archive..."),
                QStringLiteral(" FileSep5|-"),
                QStringLiteral(" FileExit|&Exit"),
                QStringLiteral("HelpMenu|&Help"),
                QStringLiteral(" HelpHelp|&Help"),
                QStringLiteral(" HelpAbout|&About Quorrix"),
            }));
}

TEST(MainMenu, EnablesWhatTheProgramCanDo) {
  MainFormStage stage;
  stage.start();
  for (const auto* const name :
       {"FileStartTrack", "FileStopTrack", "FileSearch", "FileDelete", "FileClear", "FileArchive",
        "FileLoadArchive", "FileDeleteArchive", "FileExit", "HelpHelp", "HelpAbout"}) {
    EXPECT_TRUE(stage.action(name)->isEnabled()) << name;
  }
  for (const auto* const name : {"FileMenu", "FileArchiveTop", "HelpMenu"}) {
    EXPECT_TRUE(stage.form.findChild<QMenu*>(QString::fromLatin1(name))->isEnabled()) << name;
  }
}

void expectMnemonicsToDiffer(const QList<QAction*>& actions) {
  QStringList seen;
  for (const QAction* const action : actions) {
    if (action->isSeparator()) continue;
    const QString mnemonic = QKeySequence::mnemonic(action->text()).toString();
    EXPECT_FALSE(mnemonic.isEmpty()) << action->text().toStdString();
    EXPECT_FALSE(seen.contains(mnemonic)) << action->text().toStdString();
    seen << mnemonic;
    if (action->menu() != nullptr) expectMnemonicsToDiffer(action->menu()->actions());
  }
}

TEST(MainMenu, GivesEveryItemOfAMenuAMnemonicOfItsOwn) {
  MainFormStage stage;
  expectMnemonicsToDiffer(stage.form.menuBar()->actions());
}

// "name|keys" of all entries that have keys.
QStringList keysIn(const QList<QAction*>& actions) {
  QStringList lines;
  for (const QAction* const action : actions) {
    if (!action->shortcut().isEmpty()) {
      lines << action->objectName() + QLatin1Char('|') +
                   action->shortcut().toString(QKeySequence::PortableText);
    }
    if (action->menu() != nullptr) lines << keysIn(action->menu()->actions());
  }
  return lines;
}

TEST(MainMenu, ShowsItsKeys) {
  MainFormStage stage;
  EXPECT_EQ(keysIn(stage.form.menuBar()->actions()),
            QStringList({QStringLiteral("FileSearch|Ctrl+F"), QStringLiteral("FileDelete|Del"),
                         QStringLiteral("FileExit|Ctrl+Q"), QStringLiteral("HelpHelp|F1")}));
  EXPECT_EQ(keysIn(stage.popupMenu().actions()),
            QStringList({QStringLiteral("PopUpLaunch|Return")}));
}

TEST(MainMenu, TellsAssistiveTechnologyItsKeys) {
  MainFormStage stage;
  stage.start();
  const auto accelerator = [&stage](const char* menu, const char* entry) {
    auto* const owner = stage.form.findChild<QMenu*>(QString::fromLatin1(menu));
    QAccessibleInterface* const items = QAccessible::queryAccessibleInterface(owner);
    const int row = static_cast<int>(owner->actions().indexOf(stage.action(entry)));
    return items->child(row)->text(QAccessible::Accelerator).toStdString();
  };
  EXPECT_EQ(accelerator("FileMenu", "FileDelete"), "Del");
  EXPECT_EQ(accelerator("HelpMenu", "HelpHelp"), "F1");
}

constexpr MenuItem kSmallMenu[] = {
    {MenuItemKind::Menu, "OuterMenu", "&Outer", nullptr},
    {MenuItemKind::Submenu, "InnerMenu", "&Inner", nullptr},
    {MenuItemKind::Entry, "InnerEntry", "In&ner Entry", &MainForm::HelpAbout_Click},
    {MenuItemKind::SubmenuEnd, "", "", nullptr},
    {MenuItemKind::Separator, "OuterSep", "", nullptr},
    {MenuItemKind::Entry, "OuterEntry", "Outer &Entry", &MainForm::FileExit_Click},
    {MenuItemKind::Menu, "OtherMenu", "O&ther", nullptr},
    {MenuItemKind::Entry, "OtherEntry", "Other Ent&ry", &MainForm::HelpAbout_Click},
};

TEST(FillMenuBar, PutsEveryItemIntoItsMenu) {
  MainFormStage stage;
  QMenuBar bar;
  fillMenuBar(bar, stage.form, kSmallMenu);
  EXPECT_EQ(linesOf(bar.actions()), QStringList({
                                        QStringLiteral("OuterMenu|&Outer"),
                                        QStringLiteral(" InnerMenu|&Inner"),
                                        QStringLiteral("  InnerEntry|In&ner Entry"),
                                        QStringLiteral(" OuterSep|-"),
                                        QStringLiteral(" OuterEntry|Outer &Entry"),
                                        QStringLiteral("OtherMenu|O&ther"),
                                        QStringLiteral(" OtherEntry|Other Ent&ry"),
                                    }));
}

TEST(FillMenuBar, LetsAnEntryCallItsHandler) {
  MainFormStage stage;
  QMenuBar bar;
  fillMenuBar(bar, stage.form, kSmallMenu);
  auto* const exit = bar.findChild<QAction*>(QStringLiteral("OuterEntry"));
  ASSERT_NE(exit, nullptr);
  stage.form.show();
  exit->trigger();
  EXPECT_FALSE(stage.form.isVisible());
}

}  // namespace
}  // namespace quorrix
