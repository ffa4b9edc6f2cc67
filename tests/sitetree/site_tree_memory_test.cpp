// The tree when memory runs out.
#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <new>
#include <string_view>

#include "sitetree/site_tree.h"
#include "support/scarce_memory.h"

namespace quorrix {
namespace {

class CountingObserver final : public SiteTreeObserver {
 public:
  void treeWillBeReset() override {}
  void treeWasReset() override {}
  void nodeWillBeAdded(NodeId /*parent*/, std::size_t /*row*/) override { ++announced; }
  void nodeWasAdded(NodeId /*node*/) override { ++added; }
  void nodeWillBeRemoved(NodeId /*parent*/, std::size_t /*row*/) override {}
  void nodeWasRemoved() override {}
  void selectionChanged(NodeId /*node*/) override {}

  std::size_t announced = 0;
  std::size_t added = 0;
};

bool isAdded(SiteTree& tree, const AddressLevels& levels, int failingAllocation) {
  const test::ScarceMemory scarce(failingAllocation);
  try {
    tree.addMissingLevels(levels, 'N');
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::size_t levelsIn(const SiteTree& tree, const AddressLevels& levels) {
  std::size_t found = 0;
  for (std::size_t k = 1; k <= levels.count(); ++k) {
    const NodeId node = tree.find(levelKey(levels, k));
    if (node == kNoNode) continue;
    ++found;
    EXPECT_EQ(tree.child(tree.parent(node), tree.row(node)), node);
  }
  return found;
}

TEST(SiteTreeInScarceMemory, AddsANodeWholeOrNotAtAll) {
  const AddressLevels levels = addressLevels("one.two.three/a/b/c/d/e/f/g/h/i/j/k/l/m/n/o/p/q/r/s");
  int failures = 0;
  for (bool isWhole = false; !isWhole; ++failures) {
    SiteTree tree;
    tree.addRoot();
    CountingObserver observer;
    tree.setObserver(&observer);
    isWhole = isAdded(tree, levels, failures + 1);
    EXPECT_EQ(observer.added, observer.announced);
    EXPECT_EQ(tree.size(), observer.added + 1);
    EXPECT_EQ(levelsIn(tree, levels), observer.added);
    tree.addMissingLevels(levels, 'N');
    EXPECT_EQ(tree.size(), 21U) << "with memory again";
  }
  EXPECT_GT(failures, 20) << "the children of every level take memory";
}

TEST(SiteTreeInScarceMemory, SkipsTheSiteOfABatchForWhichMemoryRunsOut) {
  const std::string_view sites[] = {"one.two.three/a", "four.five.six", "seven.eight.nine/b"};
  int failures = 0;
  for (bool isWhole = false; !isWhole; ++failures) {
    SiteTree tree;
    tree.addRoot();
    SiteTree::Batch batch(tree);
    for (std::uint64_t i = 0; i < std::size(sites); ++i) batch.add(sites[i], 'N', i + 1);
    {
      const test::ScarceMemory scarce(failures + 1);
      batch.flush();
    }
    std::size_t found = 0;
    for (std::uint64_t i = 0; i < std::size(sites); ++i) {
      const NodeId node = tree.find(sites[i]);
      if (node == kNoNode) continue;
      ++found;
      EXPECT_EQ(tree.recordNumber(node), i + 1);
    }
    isWhole = found == std::size(sites);
    EXPECT_GE(found, std::size(sites) - 1) << failures;
  }
  EXPECT_GT(failures, 3) << "every site takes memory";
}

}  // namespace
}  // namespace quorrix
