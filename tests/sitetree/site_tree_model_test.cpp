#include "sitetree/site_tree_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>

#include "support/code_pages.h"
#include "support/qt_printers.h"

namespace quorrix {
namespace {

// While this object exists, every complaint of the model tester fails the test.
class TesterComplaintsFail {
 public:
  TesterComplaintsFail() : before_(qInstallMessageHandler(&report)) {}
  ~TesterComplaintsFail() { qInstallMessageHandler(before_); }
  TesterComplaintsFail(const TesterComplaintsFail&) = delete;
  TesterComplaintsFail& operator=(const TesterComplaintsFail&) = delete;

 private:
  static void report(QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                     const QString& message) {
    ADD_FAILURE() << message.toStdString();
  }

  QtMessageHandler before_;
};

class SiteTreeModelTest : public testing::Test {
 protected:
  void add(std::string_view address) { tree_.addMissingLevels(addressLevels(address), 'N'); }

  QModelIndex indexOf(std::string_view key) const { return model_.indexOf(tree_.at(key)); }

  // Everything that the model shows, one line per node; children are indented by a blank.
  QStringList shown(const QModelIndex& parent = {}, const QString& indent = {}) const {
    QStringList lines;
    for (int row = 0; row < model_.rowCount(parent); ++row) {
      const QModelIndex index = model_.index(row, 0, parent);
      lines << indent + model_.data(index, Qt::DisplayRole).toString();
      lines << shown(index, indent + QLatin1Char(' '));
    }
    return lines;
  }

  SiteTree tree_;
  SiteTreeModel model_{tree_, test::westernCodePage()};
  TesterComplaintsFail complaintsFail_;
  QAbstractItemModelTester tester_{&model_,
                                   QAbstractItemModelTester::FailureReportingMode::Warning};
};

using SiteTreeModelShows = SiteTreeModelTest;

TEST_F(SiteTreeModelShows, NothingBeforeThereIsARoot) {
  EXPECT_EQ(model_.rowCount({}), 0);
  EXPECT_FALSE(model_.hasChildren({}));
  EXPECT_FALSE(model_.index(0, 0, {}).isValid());
  EXPECT_FALSE(model_.indexOf(tree_.root()).isValid());
}

TEST_F(SiteTreeModelShows, TheRootAlone) {
  tree_.addRoot();
  EXPECT_EQ(shown(), QStringList({QStringLiteral("www")}));
}

TEST_F(SiteTreeModelShows, HostsAndSubSitesInTheOrderInWhichTheyCame) {
  tree_.addRoot();
  add("z.host.example/b/deep");
  add("a.host.example");
  add("z.host.example/a");
  EXPECT_EQ(shown(), QStringList({
                         QStringLiteral("www"),
                         QStringLiteral(" z.host.example"),
                         QStringLiteral("  b"),
                         QStringLiteral("   deep"),
                         QStringLiteral("  a"),
                         QStringLiteral(" a.host.example"),
                     }));
}

TEST_F(SiteTreeModelShows, WhatWasAddedInBulk) {
  tree_.addRoot();
  {
    const SiteTree::BulkChange change(tree_);
    add("one.two.three/a");
    add("one.two.three/b");
  }
  EXPECT_EQ(shown(), QStringList({
                         QStringLiteral("www"),
                         QStringLiteral(" one.two.three"),
                         QStringLiteral("  a"),
                         QStringLiteral("  b"),
                     }));
}

TEST_F(SiteTreeModelShows, AnEmptySegmentAsAnEmptyText) {
  tree_.addRoot();
  add("one.two.three//a");
  EXPECT_EQ(shown(), QStringList({
                         QStringLiteral("www"),
                         QStringLiteral(" one.two.three"),
                         QStringLiteral("  "),
                         QStringLiteral("   a"),
                     }));
}

TEST_F(SiteTreeModelShows, SingleByteTextAndMarkupAsTheyAre) {
  tree_.addRoot();
  add("one.two.three/caf\xe9/<b>");
  EXPECT_EQ(model_.data(indexOf("one.two.three/caf\xe9"), Qt::DisplayRole).toString(),
            QStringLiteral("caf\u00e9"));
  EXPECT_EQ(model_.data(indexOf("one.two.three/caf\xe9/<b>"), Qt::DisplayRole).toString(),
            QStringLiteral("<b>"));
}

TEST_F(SiteTreeModelShows, NoPictures) {
  tree_.addRoot();
  add("one.two.three");
  EXPECT_FALSE(model_.data(indexOf("one.two.three"), Qt::DecorationRole).isValid());
}

using SiteTreeModelIndex = SiteTreeModelTest;

TEST_F(SiteTreeModelIndex, NamesItsNodeAndItsNodesParent) {
  tree_.addRoot();
  add("one.two.three/a");
  const QModelIndex page = indexOf("one.two.three/a");
  EXPECT_EQ(model_.nodeOf(page), tree_.at("one.two.three/a"));
  EXPECT_EQ(model_.nodeOf(page.parent()), tree_.at("one.two.three"));
  EXPECT_EQ(model_.nodeOf(page.parent().parent()), tree_.root());
  EXPECT_FALSE(page.parent().parent().parent().isValid());
  EXPECT_EQ(model_.nodeOf(QModelIndex()), kNoNode);
}

TEST_F(SiteTreeModelIndex, IsInvalidOutsideTheTree) {
  tree_.addRoot();
  add("one.two.three");
  const QModelIndex root = model_.index(0, 0, {});
  EXPECT_FALSE(model_.index(1, 0, {}).isValid());
  EXPECT_FALSE(model_.index(1, 0, root).isValid());
  EXPECT_FALSE(model_.index(-1, 0, root).isValid());
  EXPECT_FALSE(model_.index(0, 1, root).isValid());
  EXPECT_FALSE(model_.indexOf(kNoNode).isValid());
}

TEST_F(SiteTreeModelIndex, StaysWithItsNodeWhileOthersAreAdded) {
  tree_.addRoot();
  add("one.two.three/a");
  const QPersistentModelIndex page = indexOf("one.two.three/a");
  for (const auto* const address :
       {"another.host.example", "one.two.three/b/c", "one.two.three/a/x"}) {
    add(address);
  }
  EXPECT_EQ(model_.nodeOf(page), tree_.at("one.two.three/a"));
  EXPECT_EQ(page.row(), 0);
}

using SiteTreeModelItem = SiteTreeModelTest;

TEST_F(SiteTreeModelItem, CanBeSelectedAndNotEdited) {
  tree_.addRoot();
  add("one.two.three/a");
  for (const auto* const key : {"ROOT", "one.two.three", "one.two.three/a"}) {
    const Qt::ItemFlags flags = model_.flags(indexOf(key));
    EXPECT_TRUE(flags.testFlag(Qt::ItemIsEnabled)) << key;
    EXPECT_TRUE(flags.testFlag(Qt::ItemIsSelectable)) << key;
    EXPECT_FALSE(flags.testFlag(Qt::ItemIsEditable)) << key;
    EXPECT_FALSE(model_.setData(indexOf(key), QStringLiteral("other"), Qt::EditRole)) << key;
  }
  EXPECT_EQ(model_.flags({}), Qt::NoItemFlags);
}

// Views examine every leaf that does not say so, which takes far too long in a large
// tree.
TEST_F(SiteTreeModelItem, SaysThatItHasNoChildrenOnlyWhileItHasNone) {
  tree_.addRoot();
  add("one.two.three");
  EXPECT_TRUE(model_.flags(indexOf("one.two.three")).testFlag(Qt::ItemNeverHasChildren));
  EXPECT_FALSE(model_.hasChildren(indexOf("one.two.three")));
  EXPECT_FALSE(model_.flags(indexOf("ROOT")).testFlag(Qt::ItemNeverHasChildren));
  add("one.two.three/a");
  EXPECT_FALSE(model_.flags(indexOf("one.two.three")).testFlag(Qt::ItemNeverHasChildren));
  EXPECT_TRUE(model_.hasChildren(indexOf("one.two.three")));
}

using SiteTreeModelTells = SiteTreeModelTest;

TEST_F(SiteTreeModelTells, OfEveryNodeThatIsAdded) {
  tree_.addRoot();
  QSignalSpy inserted(&model_, &SiteTreeModel::rowsInserted);
  add("one.two.three/a/b");
  EXPECT_EQ(inserted.count(), 3);
  add("one.two.three/a/b");
  EXPECT_EQ(inserted.count(), 3);
  add("one.two.three/c");
  ASSERT_EQ(inserted.count(), 4);
  const QList<QVariant> last = inserted.last();
  EXPECT_EQ(model_.nodeOf(last.at(0).toModelIndex()), tree_.at("one.two.three"));
  EXPECT_EQ(last.at(1).toInt(), 1);
  EXPECT_EQ(last.at(2).toInt(), 1);
}

TEST_F(SiteTreeModelTells, OfABulkChangeOnce) {
  tree_.addRoot();
  QSignalSpy inserted(&model_, &SiteTreeModel::rowsInserted);
  QSignalSpy reset(&model_, &SiteTreeModel::modelReset);
  {
    const SiteTree::BulkChange change(tree_);
    for (const auto* const address : {"one.two.three/a", "one.two.four", "one.two.five"})
      add(address);
    EXPECT_EQ(reset.count(), 0);
  }
  EXPECT_EQ(reset.count(), 1);
  EXPECT_EQ(inserted.count(), 0);
}

TEST_F(SiteTreeModelTells, OfTheTreesSelection) {
  tree_.addRoot();
  add("one.two.three");
  QSignalSpy selected(&model_, &SiteTreeModel::treeSelectionChanged);
  tree_.select(tree_.at("one.two.three"));
  tree_.select(tree_.at("one.two.three"));
  ASSERT_EQ(selected.count(), 1);
  EXPECT_EQ(selected.last().at(0).toModelIndex(), indexOf("one.two.three"));
}

TEST(SiteTreeModel, LetsTheTreeGoOnWithoutIt) {
  SiteTree tree;
  {
    const SiteTreeModel model(tree, test::westernCodePage());
    tree.addRoot();
    EXPECT_EQ(model.rowCount({}), 1);
  }
  tree.addMissingLevels(addressLevels("one.two.three"), 'N');
  tree.select(tree.at("one.two.three"));
  EXPECT_EQ(tree.size(), 2U);
}

}  // namespace
}  // namespace quorrix
