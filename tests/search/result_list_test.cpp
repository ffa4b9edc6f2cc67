#include "search/result_list.h"

#include <gtest/gtest.h>

#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTest>

#include "support/code_pages.h"
#include "support/qt_printers.h"

namespace quorrix {
namespace {

class ResultListTest : public testing::Test {
 protected:
  ResultListTest() {
    list_.resize(300, 200);
    list_.show();
    list_.setFocus();
  }

  static std::vector<std::string> manyAddresses(int count) {
    std::vector<std::string> addresses;
    for (int i = 0; i < count; ++i) {
      addresses.push_back("www.host-" + std::to_string(i) + ".example/page");
    }
    return addresses;
  }

  bool isOnScreen(int row) {
    const QRect place = list_.visualRect(list_.model()->index(row, 0));
    return list_.viewport()->rect().contains(place.center());
  }

  ResultList list_{test::westernCodePage(), nullptr};
};

TEST_F(ResultListTest, HasNothingSelectedAtFirst) {
  list_.showAddresses({"one.two.three"});
  EXPECT_EQ(list_.selectedRow(), -1);
}

TEST_F(ResultListTest, SelectsTheFirstRowByTheFirstKeyThatMoves) {
  list_.showAddresses({"one.two.three", "four.five.six"});
  QTest::keyClick(&list_, Qt::Key_Down);
  EXPECT_EQ(list_.selectedRow(), 0);
  QTest::keyClick(&list_, Qt::Key_Down);
  EXPECT_EQ(list_.selectedRow(), 1);
  EXPECT_EQ(list_.address(1), "four.five.six");
}

TEST_F(ResultListTest, FindsAnAddressByItsBeginningWhateverTheCase) {
  list_.showAddresses({"one.two.three", "Four.five.six", "four.one.two"});
  QTest::keyClicks(&list_, QStringLiteral("FOUR"));
  EXPECT_EQ(list_.selectedRow(), 1);
  QTest::keyClicks(&list_, QStringLiteral(".o"));
  EXPECT_EQ(list_.selectedRow(), 2);
}

TEST_F(ResultListTest, FindsNothingByACharacterThatNoAddressHas) {
  list_.showAddresses({"one.two.three", "?.five.six"});
  list_.keyboardSearch(QStringLiteral("\u0436"));
  EXPECT_EQ(list_.selectedRow(), -1);
  list_.keyboardSearch({});  // ends the typed text, so that the next key begins a new one
  list_.keyboardSearch(QStringLiteral("?"));
  EXPECT_EQ(list_.selectedRow(), 1);
}

TEST_F(ResultListTest, GoesOnFromTheTopWhenItFindsNothingBelow) {
  list_.showAddresses({"one.two.three", "four.five.six"});
  list_.setCurrentIndex(list_.model()->index(1, 0));
  QTest::keyClicks(&list_, QStringLiteral("one"));
  EXPECT_EQ(list_.selectedRow(), 0);
  QTest::qWait(QApplication::keyboardInputInterval() + 1);
  QTest::keyClicks(&list_, QStringLiteral("x"));
  EXPECT_EQ(list_.selectedRow(), 0);
}

TEST_F(ResultListTest, SearchesBelowAndThenAbove) {
  list_.showAddresses({"one.two.three", "four.five.six", "one.two.four", "seven.eight.nine"});
  const auto rowsFrom = [this](int start, const QString& text) {
    QList<int> rows;
    const QAbstractItemModel& model = *list_.model();
    for (const QModelIndex& found : model.match(model.index(start, 0), Qt::DisplayRole, text, 1,
                                                Qt::MatchStartsWith | Qt::MatchWrap)) {
      rows.push_back(found.row());
    }
    return rows;
  };
  EXPECT_EQ(rowsFrom(1, QStringLiteral("ONE")), QList<int>{2});
  EXPECT_EQ(rowsFrom(3, QStringLiteral("ONE")), QList<int>{0});
  EXPECT_EQ(rowsFrom(2, QStringLiteral("four")), QList<int>{1});
  EXPECT_EQ(rowsFrom(2, QStringLiteral("x")), QList<int>{});
}

// As screen readers and tools search it.
TEST_F(ResultListTest, LeavesSearchesOfOtherKindsToQt) {
  list_.showAddresses({"one.two.three", "four.five.six", "one.two.four"});
  const QAbstractItemModel& model = *list_.model();
  const auto found = model.match(model.index(0, 0), Qt::DisplayRole, QStringLiteral("four"), -1,
                                 Qt::MatchContains);
  ASSERT_EQ(found.size(), 2);
  EXPECT_EQ(found[0].row(), 1);
  EXPECT_EQ(found[1].row(), 2);
}

TEST_F(ResultListTest, FindsAsManyRowsAsAreWanted) {
  list_.showAddresses({"one.two.three", "four.five.six", "one.two.four"});
  const QAbstractItemModel& model = *list_.model();
  const auto found = model.match(model.index(0, 0), Qt::DisplayRole, QStringLiteral("one"), 2,
                                 Qt::MatchStartsWith | Qt::MatchWrap);
  ASSERT_EQ(found.size(), 2);
  EXPECT_EQ(found[0].row(), 0);
  EXPECT_EQ(found[1].row(), 2);
}

TEST_F(ResultListTest, HasNoRowsBelowARow) {
  list_.showAddresses({"one.two.three", "four.five.six"});
  const QAbstractItemModel& model = *list_.model();
  EXPECT_EQ(model.rowCount(model.index(1, 0)), 0);
}

// Whatever keeps rows of the model forgets them before they change.
TEST_F(ResultListTest, ReportsThatItsRowsAreAboutToChangeBeforeTheyDo) {
  list_.showAddresses({"one.two.three"});
  const QAbstractItemModel& model = *list_.model();
  QStringList before;
  QObject::connect(&model, &QAbstractItemModel::modelAboutToBeReset, &list_,
                   [&] { before << model.index(0, 0).data().toString(); });
  list_.showAddresses({"four.five.six"});
  EXPECT_EQ(before, QStringList(QStringLiteral("one.two.three")));
}

TEST_F(ResultListTest, ShowsAddressesFromLeftToRightInALayoutFromRightToLeft) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  auto* const delegate = qobject_cast<QStyledItemDelegate*>(list_.itemDelegate());
  const QString shown = delegate->displayText(QStringLiteral("one.two.three/a"), QLocale::c());
  QApplication::setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(shown, QStringLiteral("\u2066one.two.three/a\u2069"));
}

TEST_F(ResultListTest, HasNoToolTipsUnlessTheyAreDescribed) {
  list_.showAddresses({"one.two.three"});
  const QModelIndex row = list_.model()->index(0, 0);
  EXPECT_FALSE(row.data(Qt::ToolTipRole).isValid());
  list_.describeBy([](const std::string& address) {
    return QString::fromStdString(address) + QStringLiteral("\n<b>");
  });
  EXPECT_EQ(row.data(Qt::ToolTipRole).toString(),
            QStringLiteral("<p style='white-space:pre'>one.two.three\n&lt;b&gt;</p>"));
}

TEST_F(ResultListTest, IsNeverWiderThanItIs) {
  list_.showAddresses({"one.two.three/" + std::string(250, 'w'), "four.five.six"});
  QCoreApplication::processEvents();
  EXPECT_EQ(list_.horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(list_.textElideMode(), Qt::ElideMiddle);
  for (const int row : {0, 1}) {
    EXPECT_EQ(list_.visualRect(list_.model()->index(row, 0)).width(), list_.viewport()->width());
  }
}

TEST_F(ResultListTest, ReachesTheLastOfAMillion) {
  constexpr int kCount = 1'000'000;
  list_.showAddresses(manyAddresses(kCount));
  // The keys start here in a list that has the focus.
  list_.selectionModel()->setCurrentIndex(list_.model()->index(0, 0),
                                          QItemSelectionModel::NoUpdate);
  QTest::keyClick(&list_, Qt::Key_End);
  EXPECT_EQ(list_.selectedRow(), kCount - 1);
  EXPECT_TRUE(isOnScreen(kCount - 1));
  QTest::keyClicks(&list_, QStringLiteral("www.host-500000."));
  EXPECT_EQ(list_.selectedRow(), 500'000);
  EXPECT_TRUE(isOnScreen(500'000));
}

}  // namespace
}  // namespace quorrix
