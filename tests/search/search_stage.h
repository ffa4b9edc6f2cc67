// A main window, a tree of three sites, and a search with results set by the test, for
// the tests of the search dialogs.
#pragma once

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <functional>
#include <string>
#include <vector>

#include "search/search_dialog.h"
#include "sitetree/site_tree.h"
#include "support/fake_clock.h"
#include "support/qt_printers.h"
#include "support/scripted_message_box.h"

namespace quorrix::test {

inline std::string describe(const SearchCriteria& criteria) {
  constexpr const char* kTypes[] = {"url", "date", "both"};
  return std::string(kTypes[static_cast<int>(criteria.userSearchType)]) + " <" +
         criteria.searchText + "> " + criteria.searchDate;
}

class SearchStage : public ::testing::Test {
 protected:
  SearchStage() {
    tree_.addRoot();
    for (const char* address : {"one.two.three/a", "caf\xE9.fr", "shop.lantern.example/wicks"}) {
      tree_.addMissingLevels(addressLevels(address), 'N');
    }
    clock_.set({.year = 2026, .month = 7, .day = 9, .hour = 15, .minute = 4, .second = 5});
    mainWindow_.setGeometry(100, 50, 600, 400);
    mainWindow_.show();
  }

  // Finds what is in found_, and records its criteria.
  SiteSearch search() {
    return [this](const SearchCriteria& criteria) {
      searches_.push_back(describe(criteria));
      if (whileSearching_) whileSearching_();
      return found_;
    };
  }

  template <typename Widget>
  static Widget& control(QWidget& dialog, const char* name) {
    return *dialog.findChild<Widget*>(QString::fromLatin1(name));
  }

  static void press(QWidget& dialog, const char* button) {
    control<QPushButton>(dialog, button).click();
  }

  static void choose(QWidget& dialog, const char* option) {
    control<QRadioButton>(dialog, option).click();
  }

  static void enter(QWidget& dialog, const char* box, const char* text) {
    control<QLineEdit>(dialog, box).setText(QString::fromUtf8(text));
  }

  static std::string entered(QWidget& dialog, const char* box) {
    return control<QLineEdit>(dialog, box).text().toStdString();
  }

  static void selectRow(QWidget& dialog, int row) {
    auto& list = control<QListView>(dialog, "List1");
    list.setCurrentIndex(list.model()->index(row, 0));
  }

  static std::string captionOf(QWidget& dialog, const char* label) {
    return control<QLabel>(dialog, label).text().toStdString();
  }

  static std::string captionOfButton(QWidget& dialog, const char* button) {
    return control<QAbstractButton>(dialog, button).text().toStdString();
  }

  // The controls that Tab reaches, from the one that has the focus until it comes back to
  // it.
  static std::vector<std::string> tabThrough(QWidget& dialog) {
    dialog.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    std::vector<std::string> names;
    const QWidget* const first = dialog.focusWidget();
    do {
      names.push_back(dialog.focusWidget()->objectName().toStdString());
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    } while (dialog.focusWidget() != first && names.size() < 20);
    return names;
  }

  FakeClock clock_;
  ScriptedMessageBox messageBox_;
  SiteTree tree_;
  QWidget mainWindow_;
  std::vector<std::string> found_;
  std::vector<std::string> searches_;
  std::function<void()> whileSearching_;
};

}  // namespace quorrix::test
