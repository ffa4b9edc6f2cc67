#include "shell/entry_list.h"

#include <gtest/gtest.h>

#include <QTest>

namespace quorrix {
namespace {

class EntryListTest : public testing::Test {
 protected:
  EntryListTest() {
    list_.addItems({QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("third")});
    list_.show();
    list_.setFocus();
  }

  EntryList list_;
};

TEST_F(EntryListTest, HasNothingSelectedAtFirst) { EXPECT_EQ(list_.selectedRow(), -1); }

TEST_F(EntryListTest, SelectsTheFirstEntryByAnyKeyThatMoves) {
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home}) {
    list_.clearSelection();
    list_.setCurrentRow(0, QItemSelectionModel::NoUpdate);
    QTest::keyClick(&list_, key);
    EXPECT_EQ(list_.selectedRow(), 0);
  }
}

TEST_F(EntryListTest, MovesOnFromASelectedEntry) {
  QTest::keyClick(&list_, Qt::Key_Down);
  QTest::keyClick(&list_, Qt::Key_Down);
  EXPECT_EQ(list_.selectedRow(), 1);
  QTest::keyClick(&list_, Qt::Key_End);
  EXPECT_EQ(list_.selectedRow(), 2);
}

TEST_F(EntryListTest, SelectsNothingWhenItIsEmpty) {
  list_.clear();
  QTest::keyClick(&list_, Qt::Key_Down);
  EXPECT_EQ(list_.selectedRow(), -1);
}

}  // namespace
}  // namespace quorrix
