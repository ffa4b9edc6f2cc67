#include "sitetree/site_tree.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/failure_number.h"

namespace quorrix {
namespace {

using test::failureNumberOf;

using Keys = std::vector<std::string>;

class SiteTreeTest : public testing::Test {
 protected:
  SiteTreeTest() { tree_.addRoot(); }

  std::size_t add(const std::string& address, char tag = 'N') {
    const std::size_t before = tree_.size();
    EXPECT_EQ(tree_.key(tree_.addMissingLevels(addressLevels(address), tag)), address);
    return tree_.size() - before;
  }

  NodeId node(std::string_view key) { return tree_.at(key); }

  Keys childrenOf(std::string_view key) {
    Keys keys;
    for (std::size_t row = 0; row < tree_.childCount(node(key)); ++row) {
      keys.emplace_back(tree_.key(tree_.child(node(key), row)));
    }
    return keys;
  }

  SiteTree tree_;
};

TEST(EmptySiteTree, HasNoRoot) {
  const SiteTree tree;
  EXPECT_EQ(tree.size(), 0U);
  EXPECT_EQ(tree.root(), kNoNode);
  EXPECT_EQ(tree.selected(), kNoNode);
  EXPECT_EQ(tree.find("ROOT"), kNoNode);
  EXPECT_EQ(failureNumberOf([&tree] { return tree.at("ROOT"); }), 35601);
}

TEST_F(SiteTreeTest, BeginsWithTheRootAlone) {
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_EQ(tree_.key(tree_.root()), "ROOT");
  EXPECT_EQ(tree_.text(tree_.root()), "www");
  EXPECT_EQ(tree_.tag(tree_.root()), kNoTag);
  EXPECT_EQ(tree_.parent(tree_.root()), kNoNode);
  EXPECT_EQ(tree_.childCount(tree_.root()), 0U);
  EXPECT_EQ(tree_.find("ROOT"), tree_.root());
  EXPECT_EQ(tree_.selected(), tree_.root());
}

TEST_F(SiteTreeTest, AddsEveryLevelOfAnAddress) {
  EXPECT_EQ(add("one.two.three/dir/page.html", 'S'), 3U);
  EXPECT_EQ(tree_.size(), 4U);
  EXPECT_EQ(childrenOf("ROOT"), Keys{"one.two.three"});
  EXPECT_EQ(childrenOf("one.two.three"), Keys{"one.two.three/dir"});
  EXPECT_EQ(childrenOf("one.two.three/dir"), Keys{"one.two.three/dir/page.html"});
  EXPECT_EQ(childrenOf("one.two.three/dir/page.html"), Keys{});
  EXPECT_EQ(tree_.text(node("one.two.three")), "one.two.three");
  EXPECT_EQ(tree_.text(node("one.two.three/dir")), "dir");
  EXPECT_EQ(tree_.text(node("one.two.three/dir/page.html")), "page.html");
  for (const char* key : {"one.two.three", "one.two.three/dir", "one.two.three/dir/page.html"}) {
    EXPECT_EQ(tree_.tag(node(key)), 'S') << key;
  }
}

TEST_F(SiteTreeTest, AddsOnlyWhatIsMissing) {
  add("one.two.three/a/b");
  EXPECT_EQ(add("one.two.three/a/c"), 1U);
  EXPECT_EQ(add("one.two.three/a"), 0U);
  EXPECT_EQ(add("one.two.three/a/b"), 0U);
  EXPECT_EQ(tree_.size(), 5U);
  EXPECT_EQ(childrenOf("one.two.three/a"), (Keys{"one.two.three/a/b", "one.two.three/a/c"}));
}

TEST_F(SiteTreeTest, LeavesTheTagsOfNodesThatAreThere) {
  add("one.two.three/a", 'N');
  add("one.two.three/a/b", 'S');
  EXPECT_EQ(tree_.tag(node("one.two.three")), 'N');
  EXPECT_EQ(tree_.tag(node("one.two.three/a")), 'N');
  EXPECT_EQ(tree_.tag(node("one.two.three/a/b")), 'S');
}

TEST_F(SiteTreeTest, KeepsTheOrderOfAdding) {
  for (const char* address : {"z.z.z", "a.a.a", "M.m.m", "b.b.b/2", "a.a.a/1"}) add(address);
  EXPECT_EQ(childrenOf("ROOT"), (Keys{"z.z.z", "a.a.a", "M.m.m", "b.b.b"}));
  EXPECT_EQ(tree_.row(node("z.z.z")), 0U);
  EXPECT_EQ(tree_.row(node("b.b.b")), 3U);
  EXPECT_EQ(tree_.row(node("a.a.a/1")), 0U);
}

TEST_F(SiteTreeTest, CountsLetterCaseInKeys) {
  add("one.two.three/A");
  EXPECT_EQ(add("one.two.three/a"), 1U);
  EXPECT_EQ(add("One.two.three"), 1U);
  EXPECT_EQ(tree_.find("one.two.three/B"), kNoNode);
}

TEST_F(SiteTreeTest, FindsWholeKeysOnly) {
  add("one.two.three/page");
  EXPECT_EQ(tree_.find("one.two.three/pag"), kNoNode);
  EXPECT_EQ(tree_.find("one.two.three/pages"), kNoNode);
  EXPECT_EQ(tree_.find("one.two.three/"), kNoNode);
  EXPECT_EQ(tree_.find("page"), kNoNode);
  EXPECT_EQ(tree_.find("www"), kNoNode);
  EXPECT_EQ(tree_.find(""), kNoNode);
  EXPECT_EQ(failureNumberOf([this] { return tree_.at("page"); }), 35601);
}

TEST_F(SiteTreeTest, KeepsEmptyLevels) {
  EXPECT_EQ(add("one.two.three//a"), 3U);
  EXPECT_EQ(childrenOf("one.two.three"), Keys{"one.two.three/"});
  EXPECT_EQ(tree_.text(node("one.two.three/")), "");
  EXPECT_EQ(tree_.text(node("one.two.three//a")), "a");
  EXPECT_EQ(add("one.two.three/"), 0U);
}

TEST_F(SiteTreeTest, TakesAHostNamedLikeTheRootForTheRoot) {
  EXPECT_EQ(add("ROOT"), 0U);
  EXPECT_EQ(add("ROOT/a"), 1U);
  EXPECT_EQ(childrenOf("ROOT"), Keys{"ROOT/a"});
  EXPECT_EQ(tree_.text(node("ROOT/a")), "a");
  EXPECT_EQ(tree_.tag(tree_.root()), kNoTag);
  EXPECT_EQ(tree_.text(tree_.root()), "www");
}

TEST_F(SiteTreeTest, AddsAHostNamedLikeTheRootsText) {
  EXPECT_EQ(add("www"), 1U);
  EXPECT_EQ(childrenOf("ROOT"), Keys{"www"});
}

TEST_F(SiteTreeTest, KeepsKeysWhenTheAddressIsGone) {
  std::string address = "one.two.three/page";
  add(address);
  address.assign(address.size(), '?');
  EXPECT_EQ(tree_.key(node("one.two.three/page")), "one.two.three/page");
}

TEST_F(SiteTreeTest, KeepsKeysWhileItGrows) {
  add("one.two.three/page");
  const std::string_view key = tree_.key(node("one.two.three/page"));
  for (int i = 0; i < 20'000; ++i) add("host.of.number" + std::to_string(i) + "/page");
  EXPECT_EQ(key, "one.two.three/page");
  EXPECT_EQ(tree_.size(), 40'003U);
}

TEST_F(SiteTreeTest, ChangesTheTagOfOneNode) {
  add("one.two.three/a");
  tree_.setTag(node("one.two.three/a"), 'S');
  EXPECT_EQ(tree_.tag(node("one.two.three/a")), 'S');
  EXPECT_EQ(tree_.tag(node("one.two.three")), 'N');
}

TEST_F(SiteTreeTest, SelectsANode) {
  add("one.two.three/a");
  tree_.select(node("one.two.three/a"));
  EXPECT_EQ(tree_.selected(), node("one.two.three/a"));
}

TEST_F(SiteTreeTest, CountsTheRootAsSelectedWhenNothingIs) {
  add("one.two.three");
  tree_.select(node("one.two.three"));
  tree_.select(kNoNode);
  EXPECT_EQ(tree_.selected(), tree_.root());
}

TEST_F(SiteTreeTest, RemovesANodeWithEverythingBelowIt) {
  for (const auto* const address :
       {"one.two.three/a/b", "one.two.three/c", "four.five.six", "seven.eight.nine/z"}) {
    add(address);
  }
  tree_.remove(node("one.two.three"));
  for (const auto* const gone :
       {"one.two.three", "one.two.three/a", "one.two.three/a/b", "one.two.three/c"}) {
    EXPECT_EQ(tree_.find(gone), kNoNode) << gone;
  }
  EXPECT_EQ(tree_.size(), 4U);
  EXPECT_EQ(childrenOf("ROOT"), (Keys{"four.five.six", "seven.eight.nine"}));
  EXPECT_EQ(tree_.row(node("seven.eight.nine")), 1U);
  EXPECT_NE(tree_.find("seven.eight.nine/z"), kNoNode);
}

TEST_F(SiteTreeTest, AddsAgainWhatWasRemoved) {
  add("one.two.three/a", 'N');
  tree_.setRecordNumber(node("one.two.three/a"), 7);
  tree_.remove(node("one.two.three/a"));
  EXPECT_EQ(add("one.two.three/a", 'S'), 1U);
  EXPECT_EQ(tree_.tag(node("one.two.three/a")), 'S');
  EXPECT_EQ(tree_.recordNumber(node("one.two.three/a")), 0U);
}

TEST_F(SiteTreeTest, SelectsTheNextSiblingOfARemovedNodeThatWasSelected) {
  for (const auto* const host : {"a.a.a/x", "b.b.b/x", "c.c.c"}) add(host);
  tree_.select(node("b.b.b"));
  tree_.remove(node("b.b.b"));
  EXPECT_EQ(tree_.selected(), node("c.c.c"));
  tree_.remove(node("c.c.c"));
  EXPECT_EQ(tree_.selected(), node("a.a.a")) << "there is no next one";
  tree_.select(node("a.a.a/x"));
  tree_.remove(node("a.a.a/x"));
  EXPECT_EQ(tree_.selected(), node("a.a.a")) << "there is no sibling";
  tree_.remove(node("a.a.a"));
  EXPECT_EQ(tree_.selected(), tree_.root());
}

TEST_F(SiteTreeTest, KeepsTheSelectionThatIsNotRemoved) {
  for (const auto* const host : {"a.a.a", "b.b.b/x", "c.c.c"}) add(host);
  tree_.select(node("a.a.a"));
  tree_.remove(node("b.b.b"));
  EXPECT_EQ(tree_.selected(), node("a.a.a"));
}

TEST_F(SiteTreeTest, SelectsBesideARemovedNodeWhenOneBelowItWasSelected) {
  for (const auto* const host : {"a.a.a/x/y", "b.b.b"}) add(host);
  tree_.select(node("a.a.a/x/y"));
  tree_.remove(node("a.a.a"));
  EXPECT_EQ(tree_.selected(), node("b.b.b"));
}

TEST_F(SiteTreeTest, CollectsTheKeysBelowANodeInTheOrderOfTheRows) {
  for (const auto* const address :
       {"one.two.three/a/b", "four.five.six", "one.two.three/c", "one.two.three/a/d"}) {
    add(address);
  }
  EXPECT_EQ(tree_.collectSubtreeKeys(node("one.two.three")),
            (std::vector<std::string_view>{"one.two.three", "one.two.three/a", "one.two.three/a/b",
                                           "one.two.three/a/d", "one.two.three/c"}));
  EXPECT_EQ(tree_.collectSubtreeKeys(node("four.five.six")),
            std::vector<std::string_view>{"four.five.six"});
}

TEST_F(SiteTreeTest, BeginsAnewWhenItIsCleared) {
  add("one.two.three/a");
  tree_.select(node("one.two.three/a"));
  tree_.clear();
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_EQ(tree_.key(tree_.root()), "ROOT");
  EXPECT_EQ(tree_.text(tree_.root()), "www");
  EXPECT_EQ(tree_.selected(), tree_.root());
  EXPECT_EQ(tree_.find("one.two.three"), kNoNode);
  EXPECT_EQ(add("one.two.three/a"), 2U);
}

// Records the notifications, and checks that the tree is in the state that each of them
// announces.
class EventLog final : public SiteTreeObserver {
 public:
  explicit EventLog(const SiteTree& tree) : tree_(tree) {}

  void treeWillBeReset() override { events.emplace_back("will be reset"); }
  void treeWasReset() override { events.push_back("was reset, " + std::to_string(tree_.size())); }

  void nodeWillBeAdded(NodeId parent, std::size_t row) override {
    EXPECT_EQ(tree_.childCount(parent), row);
    events.push_back("will be added to " + std::string(tree_.key(parent)) + " at " +
                     std::to_string(row));
  }

  void nodeWasAdded(NodeId node) override {
    EXPECT_EQ(tree_.find(tree_.key(node)), node);
    EXPECT_EQ(tree_.child(tree_.parent(node), tree_.row(node)), node);
    events.push_back("was added " + std::string(tree_.key(node)));
  }

  void nodeWillBeRemoved(NodeId parent, std::size_t row) override {
    removed_ = tree_.key(tree_.child(parent, row));
    events.push_back("will be removed " + removed_);
  }

  void nodeWasRemoved() override {
    EXPECT_EQ(tree_.find(removed_), kNoNode);
    events.push_back("was removed");
  }

  void selectionChanged(NodeId node) override {
    events.push_back("selected " + (node == kNoNode ? "nothing" : std::string(tree_.key(node))));
  }

  std::vector<std::string> events;

 private:
  const SiteTree& tree_;
  std::string removed_;
};

class ObservedSiteTreeTest : public SiteTreeTest {
 protected:
  ObservedSiteTreeTest() { tree_.setObserver(&log_); }

  EventLog log_{tree_};
};

TEST_F(ObservedSiteTreeTest, AnnouncesEachNodeBeforeAndAfter) {
  add("one.two.three/a");
  EXPECT_EQ(log_.events, (std::vector<std::string>{
                             "will be added to ROOT at 0", "was added one.two.three",
                             "will be added to one.two.three at 0", "was added one.two.three/a"}));
}

TEST_F(ObservedSiteTreeTest, SaysNothingWhenNothingIsAdded) {
  add("one.two.three/a");
  log_.events.clear();
  add("one.two.three/a");
  add("one.two.three");
  EXPECT_EQ(log_.events, std::vector<std::string>{});
}

TEST_F(ObservedSiteTreeTest, AnnouncesANewSelectionAndThenARemoval) {
  add("a.a.a/x");
  add("b.b.b");
  tree_.select(node("a.a.a/x"));
  log_.events.clear();
  tree_.remove(node("a.a.a"));
  EXPECT_EQ(log_.events,
            (std::vector<std::string>{"selected b.b.b", "will be removed a.a.a", "was removed"}));
}

TEST_F(ObservedSiteTreeTest, AnnouncesClearingAsOneReset) {
  add("a.a.a/x");
  log_.events.clear();
  tree_.clear();
  EXPECT_EQ(log_.events, (std::vector<std::string>{"will be reset", "was reset, 1"}));
}

TEST_F(ObservedSiteTreeTest, AnnouncesABulkChangeAsOneReset) {
  {
    const SiteTree::BulkChange change(tree_);
    add("one.two.three/a");
    add("one.two.three/b");
  }
  EXPECT_EQ(log_.events, (std::vector<std::string>{"will be reset", "was reset, 4"}));
  log_.events.clear();
  add("one.two.three/c");
  EXPECT_EQ(log_.events.size(), 2U);
}

TEST_F(ObservedSiteTreeTest, AnnouncesNestedBulkChangesAsOneReset) {
  {
    const SiteTree::BulkChange outer(tree_);
    {
      const SiteTree::BulkChange inner(tree_);
      add("one.two.three/a");
    }
    add("one.two.three/b");
  }
  EXPECT_EQ(log_.events, (std::vector<std::string>{"will be reset", "was reset, 4"}));
}

TEST_F(ObservedSiteTreeTest, EndsABulkChangeAlsoAfterAFailure) {
  const auto failInside = [this] {
    const SiteTree::BulkChange change(tree_);
    add("one.two.three");
    throw Failure(57);
  };
  EXPECT_EQ(failureNumberOf(failInside), 57);
  EXPECT_EQ(log_.events, (std::vector<std::string>{"will be reset", "was reset, 2"}));
}

TEST(SiteTreeObserved, AnnouncesTheRootAsAReset) {
  SiteTree tree;
  EventLog log(tree);
  tree.setObserver(&log);
  tree.addRoot();
  EXPECT_EQ(log.events, (std::vector<std::string>{"will be reset", "was reset, 1"}));
}

TEST_F(ObservedSiteTreeTest, AnnouncesANewSelectionOnly) {
  add("one.two.three");
  log_.events.clear();
  tree_.select(node("one.two.three"));
  tree_.select(node("one.two.three"));
  tree_.select(kNoNode);
  EXPECT_EQ(log_.events, (std::vector<std::string>{"selected one.two.three", "selected nothing"}));
}

TEST_F(ObservedSiteTreeTest, SaysNothingMoreWithoutAnObserver) {
  tree_.setObserver(nullptr);
  add("one.two.three");
  tree_.select(node("one.two.three"));
  EXPECT_EQ(log_.events, std::vector<std::string>{});
}

// The simplest form of the tree: maps, and every key cut from the address separately.
class ModelTree {
 public:
  struct Node {
    std::string parent;
    std::string text;
    char tag = kNoTag;
    Keys children;
  };

  ModelTree() { nodes["ROOT"] = {.parent = "", .text = "www", .tag = kNoTag, .children = {}}; }

  std::size_t add(const std::string& address, char tag) {
    std::size_t added = 0;
    std::string parent = "ROOT";
    std::size_t start = 0;
    while (true) {
      const std::size_t end = address.find('/', start);
      const std::string key = address.substr(0, end);
      if (!nodes.contains(key)) {
        nodes[key] = {.parent = parent, .text = key.substr(start), .tag = tag, .children = {}};
        nodes[parent].children.push_back(key);
        ++added;
      }
      if (end == std::string::npos) return added;
      parent = key;
      start = end + 1;
    }
  }

  void remove(const std::string& key) {
    std::erase(nodes[nodes[key].parent].children, key);
    std::erase_if(nodes, [&key](const auto& entry) {
      return entry.first == key || entry.first.starts_with(key + '/');
    });
  }

  std::map<std::string, Node> nodes;
};

// The segments are few and short, so that addresses often share levels.
std::string randomAddress(std::mt19937& random) {
  static const char* const kSegments[] = {"a", "b", "A", "", "www", "ROOT", "ab", "a.b.c", "\xE9"};
  std::string address = kSegments[random() % std::size(kSegments)];
  if (random() % 3 == 0) address += std::to_string(random() % 500);
  for (auto further = random() % 6; further > 0; --further) {
    address += '/';
    address += kSegments[random() % std::size(kSegments)];
    if (random() % 4 == 0) address += std::to_string(random() % 20);
  }
  return address;
}

TEST_F(SiteTreeTest, AddsABatchAsItAddsOneAddressAfterTheOther) {
  std::mt19937 random(20'261'121);
  SiteTree single;
  single.addRoot();
  SiteTree::Batch batch(tree_);
  for (std::uint64_t number = 1; number <= 5'000; ++number) {
    const std::string address = randomAddress(random);
    const char tag = "NSU"[random() % 3];
    const NodeId node = single.addMissingLevels(addressLevels(address), tag);
    if (single.recordNumber(node) == 0) single.setRecordNumber(node, number);
    batch.add(address, tag, number);
  }
  EXPECT_LT(tree_.size(), single.size()) << "the last ones wait for the others";
  batch.flush();
  ASSERT_EQ(tree_.size(), single.size());
  for (NodeId node = 0; node < single.size(); ++node) {
    ASSERT_EQ(tree_.key(node), single.key(node));
    EXPECT_EQ(tree_.parent(node), single.parent(node));
    EXPECT_EQ(tree_.tag(node), single.tag(node));
    EXPECT_EQ(tree_.recordNumber(node), single.recordNumber(node));
  }
}

TEST_F(SiteTreeTest, LeavesAnAddressThatIsTooLongOutOfABatch) {
  SiteTree::Batch batch(tree_);
  batch.add(std::string(300, 'a'), 'N', 1);
  EXPECT_EQ(failureNumberOf([&batch] { batch.add(std::string(301, 'b'), 'N', 2); }), 9);
  batch.flush();
  EXPECT_EQ(tree_.size(), 2U);
  EXPECT_NE(tree_.find(std::string(300, 'a')), kNoNode);
}

TEST_F(SiteTreeTest, LeavesAnAddressOfTooManyLevelsOutOfABatch) {
  std::string deep = "a.b.c";
  for (std::size_t level = 1; level < kMaxLevels; ++level) deep += "/x";
  SiteTree::Batch batch(tree_);
  batch.add("one.two.three", 'N', 1);
  EXPECT_EQ(failureNumberOf([&] { batch.add(deep + "/x", 'N', 2); }), 9);
  batch.add(deep, 'N', 3);
  batch.flush();
  EXPECT_NE(tree_.find("one.two.three"), kNoNode);
  EXPECT_EQ(tree_.recordNumber(node(deep)), 3U);
  EXPECT_EQ(tree_.find(deep + "/x"), kNoNode);
}

TEST_F(SiteTreeTest, AgreesWithAPlainMapOfKeys) {
  std::mt19937 random(20'260'709);
  ModelTree model;
  for (int round = 0; round < 40'000; ++round) {
    if (random() % 4 == 0) {
      const std::string removed = randomAddress(random);
      if (removed != "ROOT" && tree_.find(removed) != kNoNode) {
        tree_.remove(node(removed));
        model.remove(removed);
      }
    }
    const std::string address = randomAddress(random);
    const char tag = "NSU"[random() % 3];
    ASSERT_EQ(add(address, tag), model.add(address, tag)) << address;
    const std::string sought = randomAddress(random);
    ASSERT_EQ(tree_.find(sought) != kNoNode, model.nodes.contains(sought)) << sought;
  }
  ASSERT_GT(model.nodes.size(), 5'000U);
  ASSERT_EQ(tree_.size(), model.nodes.size());
  for (const auto& [key, expected] : model.nodes) {
    const NodeId found = node(key);
    ASSERT_EQ(tree_.key(found), key);
    EXPECT_EQ(tree_.text(found), expected.text) << key;
    EXPECT_EQ(tree_.tag(found), expected.tag) << key;
    EXPECT_EQ(childrenOf(key), expected.children) << key;
    if (key == "ROOT") continue;
    EXPECT_EQ(tree_.key(tree_.parent(found)), expected.parent) << key;
    EXPECT_EQ(tree_.child(tree_.parent(found), tree_.row(found)), found) << key;
  }
}

}  // namespace
}  // namespace quorrix
