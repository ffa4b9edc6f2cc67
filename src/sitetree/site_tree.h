// The tree of recorded sites: a root, a node for each host, and a node for each further
// segment of an address. This is the data; the view on screen mirrors it through an
// observer. Looking up a key and adding a node take the same time at any size. Children
// stay in the order in which they were added.
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

// Identifies a node for as long as it is in the tree.
using NodeId = std::uint32_t;
inline constexpr NodeId kNoNode = KeyIndex::kNone;

inline constexpr std::string_view kRootKey = "ROOT";
inline constexpr std::string_view kRootText = "www";
inline constexpr char kNoTag = '\0';  // a node whose scheme has not been set yet

class SiteTreeObserver {
 public:
  virtual ~SiteTreeObserver() = default;

  virtual void treeWillBeReset() = 0;  // nodes change unannounced until treeWasReset
  virtual void treeWasReset() = 0;
  virtual void nodeWillBeAdded(NodeId parent, std::size_t row) = 0;
  virtual void nodeWasAdded(NodeId node) = 0;
  virtual void nodeWillBeRemoved(NodeId parent, std::size_t row) = 0;  // with its subtree
  virtual void nodeWasRemoved() = 0;
  virtual void selectionChanged(NodeId node) = 0;
};

class SiteTree {
 public:
  SiteTree() = default;
  SiteTree(const SiteTree&) = delete;
  SiteTree& operator=(const SiteTree&) = delete;

  // There is at most one observer. It is notified when nodes are added or removed and
  // when the selection changes. Null removes it.
  void setObserver(SiteTreeObserver* observer) { observer_ = observer; }

  // Adds the root to the empty tree and selects it.
  void addRoot();

  // Adds the missing levels of an address, from the host down, each with `tag`. Existing
  // nodes keep their tags. A host that equals the root's key is the root. Returns the
  // node of the whole address.
  NodeId addMissingLevels(const AddressLevels& levels, char tag);

  // Adds many addresses in order, each as addMissingLevels() does.
  class Batch;

  // Removes a node, which must not be the root, and everything below it. If the selected
  // node is removed, the next sibling of `node` is selected, else the previous sibling,
  // else the parent.
  void remove(NodeId node);

  // Removes every node and adds the root again.
  void clear();

  // The keys of a node and of everything below it, in pre-order. The views are valid
  // until the node is removed.
  [[nodiscard]] std::vector<std::string_view> collectSubtreeKeys(NodeId node) const;

  // Makes room for about `nodes` more nodes.
  void reserve(std::size_t nodes);

  // Includes the root. Zero before addRoot().
  [[nodiscard]] std::size_t size() const { return nodes_.size() - removed_; }
  [[nodiscard]] NodeId root() const { return nodes_.empty() ? kNoNode : 0; }

  // Returns kNoNode if no node has the key.
  [[nodiscard]] NodeId find(std::string_view key) const;

  // Throws kElementNotFound if no node has the key.
  [[nodiscard]] NodeId at(std::string_view key) const;

  // The views are valid as long as the node is in the tree. The text is the last segment
  // of the key; the root's text is kRootText.
  [[nodiscard]] std::string_view key(NodeId node) const;
  [[nodiscard]] std::string_view text(NodeId node) const;

  [[nodiscard]] char tag(NodeId node) const { return nodes_[node].tag; }
  void setTag(NodeId node, char tag) { nodes_[node].tag = tag; }

  // The number that the address's first record had in the site file when the file was
  // last read; 0 if it is unknown. The file may have changed since.
  [[nodiscard]] std::uint32_t recordNumber(NodeId node) const { return nodes_[node].recordNumber; }
  void setRecordNumber(NodeId node, std::uint64_t number) {
    nodes_[node].recordNumber = static_cast<std::uint32_t>(number);
  }

  [[nodiscard]] NodeId parent(NodeId node) const { return nodes_[node].parent; }
  [[nodiscard]] std::size_t childCount(NodeId node) const { return nodes_[node].children.size(); }
  [[nodiscard]] NodeId child(NodeId node, std::size_t row) const {
    return nodes_[node].children[row];
  }
  // The node's position among its parent's children, counted from 0.
  [[nodiscard]] std::size_t row(NodeId node) const { return nodes_[node].row; }

  // Returns the root if nothing is selected.
  [[nodiscard]] NodeId selected() const { return selected_ == kNoNode ? root() : selected_; }
  void select(NodeId node);

  // While a BulkChange exists, the observer is notified of one reset instead of every
  // node.
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

  // The root is the first element. The element of a removed node stays empty until the
  // tree is cleared, so that no number identifies two nodes before then.
  std::vector<Node> nodes_;
  std::size_t removed_ = 0;
  KeyIndex index_;
  // Addresses, each stored once. The keys of its levels are prefixes of it.
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t freeInBlock_ = 0;
  NodeId selected_ = kNoNode;
  SiteTreeObserver* observer_ = nullptr;
};

// A large tree does not fit into the processor's cache, so adding a single address waits
// for memory at every step. A batch collects addresses. Before it adds the first one, it
// prefetches the data with which all of them will be compared. A large site file then
// loads in two thirds of the time.
class SiteTree::Batch {
 public:
  explicit Batch(SiteTree& tree) : tree_(tree) {}

  // Copies an address of at most kMaxAddressLength characters. `recordNumber` is the
  // number of its record; a node keeps the first number that it is given. Throws
  // kIndexOutOfRange if the address has more than kMaxLevels levels or is too long; the
  // address is then not added.
  void add(std::string_view siteAddress, char tag, std::uint64_t recordNumber);

  // Adds the addresses collected since the last flush, and skips those that cannot be
  // added. Must be called after the last add().
  void flush();

 private:
  struct Entry {
    std::array<char, kMaxAddressLength> characters;
    AddressLevels levels;
    LevelHashes hashes;
    std::uint64_t recordNumber;
    NodeId likely;  // its deepest level already in the tree, judged by hashes alone
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
