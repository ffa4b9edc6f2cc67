// The tree of recorded sites: one root, a node per host, a node per further
// segment of an address. This is the tree itself; the view on screen mirrors it
// through an observer. Looking up a key and adding a node cost the same at any
// size. Nodes keep the order in which they were added.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "datafiles/site_address.h"
#include "sitetree/key_index.h"

namespace quorrix {

// Names a node for as long as it is in the tree.
using NodeId = std::uint32_t;
inline constexpr NodeId kNoNode = KeyIndex::kNone;

inline constexpr std::string_view kRootKey = "ROOT";
inline constexpr std::string_view kRootText = "www";
inline constexpr char kNoTag = '\0';  // a node whose scheme nobody has set yet

class SiteTreeObserver {
 public:
  virtual ~SiteTreeObserver() = default;

  virtual void treeWillBeReset() = 0;  // until treeWasReset nodes come and go unannounced
  virtual void treeWasReset() = 0;
  virtual void nodeWillBeAdded(NodeId parent, std::size_t row) = 0;
  virtual void nodeWasAdded(NodeId node) = 0;
  virtual void nodeWillBeRemoved(NodeId parent, std::size_t row) = 0;  // with all below it
  virtual void nodeWasRemoved() = 0;
  virtual void selectionChanged(NodeId node) = 0;
};

class SiteTree {
 public:
  SiteTree() = default;
  SiteTree(const SiteTree&) = delete;
  SiteTree& operator=(const SiteTree&) = delete;

  // At most one observer, told of every change; null for none.
  void setObserver(SiteTreeObserver* observer) { observer_ = observer; }

  // Adds the root to the empty tree and selects it.
  void addRoot();

  // Adds what the tree lacks of the levels of an address, from the host down,
  // each with `tag`; nodes that are there keep theirs. A host named like the
  // root's key is the root. Returns the node of the whole address.
  NodeId addMissingLevels(const AddressLevels& levels, char tag);

  // Adds many addresses, each as addMissingLevels does, in order.
  class Batch;

  // Removes a node other than the root with everything below it. If that holds the
  // selected node, the next sibling is selected, else the previous one, else the parent.
  void remove(NodeId node);

  // Removes every node and adds the root again.
  void clear();

  // The keys of a node and of everything below it, each node before those below it,
  // children in their order. Views that live until the node is removed.
  [[nodiscard]] std::vector<std::string_view> collectSubtreeKeys(NodeId node) const;

  // Makes room for about so many more nodes.
  void reserve(std::size_t nodes);

  // The root counts. Zero before addRoot.
  [[nodiscard]] std::size_t size() const { return nodes_.size() - removed_; }
  [[nodiscard]] NodeId root() const { return nodes_.empty() ? kNoNode : 0; }

  // kNoNode when no node has the key.
  [[nodiscard]] NodeId find(std::string_view key) const;

  // Throws kElementNotFound when no node has the key.
  [[nodiscard]] NodeId at(std::string_view key) const;

  // Views that live as long as the node. The text is the key's last segment,
  // but for the root.
  [[nodiscard]] std::string_view key(NodeId node) const;
  [[nodiscard]] std::string_view text(NodeId node) const;

  [[nodiscard]] char tag(NodeId node) const { return nodes_[node].tag; }
  void setTag(NodeId node, char tag) { nodes_[node].tag = tag; }

  // Where the site file had the address's first record when it was last looked
  // at; 0 when that is not known. The file may have changed since.
  [[nodiscard]] std::uint32_t recordNumber(NodeId node) const { return nodes_[node].recordNumber; }
  void setRecordNumber(NodeId node, std::uint64_t number) {
    nodes_[node].recordNumber = static_cast<std::uint32_t>(number);
  }

  [[nodiscard]] NodeId parent(NodeId node) const { return nodes_[node].parent; }
  [[nodiscard]] std::size_t childCount(NodeId node) const { return nodes_[node].children.size(); }
  [[nodiscard]] NodeId child(NodeId node, std::size_t row) const {
    return nodes_[node].children[row];
  }
  // The place among its parent's children, counted from 0.
  [[nodiscard]] std::size_t row(NodeId node) const { return nodes_[node].row; }

  // With nothing selected, the root.
  [[nodiscard]] NodeId selected() const { return selected_ == kNoNode ? root() : selected_; }
  void select(NodeId node);

  // While one of these lives, the observer hears of one reset instead of every node.
  class BulkChange {
   public:
    explicit BulkChange(SiteTree& tree);
    ~BulkChange();
    BulkChange(const BulkChange&) = delete;
    BulkChange& operator=(const BulkChange&) = delete;

   private:
    SiteTree& tree_;
    SiteTreeObserver* observer_;
  };

 private:
  struct Node {
    const char* key;
    NodeId parent;
    std::uint32_t row;
    std::uint32_t recordNumber;
    std::uint16_t keyLength;
    std::uint16_t textStart;
    char tag;
    std::vector<NodeId> children;
  };

  using LevelHashes = std::array<std::uint32_t, kMaxLevels>;  // of the levels' keys

  [[nodiscard]] static LevelHashes hashesOf(const AddressLevels& levels);
  NodeId addMissingLevels(const AddressLevels& levels, const LevelHashes& hashes, char tag);
  [[nodiscard]] NodeId find(std::string_view key, std::uint32_t hash) const;
  NodeId add(NodeId parent, std::string_view key, std::size_t textStart, std::uint32_t hash);
  void makeRoom(NodeId parent);
  [[nodiscard]] std::string_view keep(std::string_view address);

  [[nodiscard]] std::vector<NodeId> subtree(NodeId node) const;
  [[nodiscard]] NodeId selectedAfterRemoving(NodeId node) const;

  // The root is the first. A removed node leaves its place empty until the tree is
  // cleared, so that no number ever names two nodes.
  std::vector<Node> nodes_;
  std::size_t removed_ = 0;
  KeyIndex index_;
  // Addresses, each stored once: the keys of its levels are its beginnings.
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t freeInBlock_ = 0;
  NodeId selected_ = kNoNode;
  SiteTreeObserver* observer_ = nullptr;
};

// A large tree does not fit into the processor's cache, and an address that is
// added by itself waits for memory at every step. A batch collects addresses and,
// before it adds the first of them, has what all of them will be compared with
// fetched side by side: a large site file loads in two thirds of the time.
class SiteTree::Batch {
 public:
  explicit Batch(SiteTree& tree) : tree_(tree) {}

  // Takes a copy of an address of at most kMaxAddressLength characters, and the
  // number of its record: the first one given for a node stays. Throws kIndexOutOfRange
  // at a 51st level and for a longer address, and then has not taken the address.
  void add(std::string_view siteAddress, char tag, std::uint64_t recordNumber);

  // Adds what has been collected since the last time, passing over what cannot be
  // added; call it at the end.
  void flush();

 private:
  struct Entry {
    std::array<char, kMaxAddressLength> characters;
    AddressLevels levels;
    LevelHashes hashes;
    std::uint64_t recordNumber;
    NodeId likely;  // its last level that is there already, going by hashes alone
    char tag;
  };

  void expectKeys(const Entry& entry) const;
  void expectNode(Entry& entry) const;
  void expectComparison(const Entry& entry) const;

  SiteTree& tree_;
  std::array<Entry, 16> entries_;
  std::size_t used_ = 0;
};

}  // namespace quorrix
