#include "sitetree/site_tree.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"

namespace quorrix {
namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;  // of stored addresses, in bytes

std::uint32_t hashOf(std::string_view key) {
  KeyHash hash;
  hash.add(key);
  return hash.value();
}

}  // namespace

void SiteTree::addRoot() {
  const BulkChange change(*this);
  add(kNoNode, kRootKey, 0, hashOf(kRootKey));
  selected_ = root();
}

NodeId SiteTree::addMissingLevels(const AddressLevels& levels, char tag) {
  return addMissingLevels(levels, hashesOf(levels), tag);
}

SiteTree::LevelHashes SiteTree::hashesOf(const AddressLevels& levels) {
  LevelHashes hashes;
  KeyHash hash;
  for (std::size_t k = 1; k <= levels.count(); ++k) {
    if (k > 1) hash.add('/');
    hash.add(levelText(levels, k));
    hashes[k - 1] = hash.value();
  }
  return hashes;
}

NodeId SiteTree::addMissingLevels(const AddressLevels& levels, const LevelHashes& hashes,
                                  char tag) {
  // A node is in the tree only if all its ancestors are. So the deepest level that is
  // found shows which levels are missing.
  std::size_t present = levels.count();
  NodeId parent = kNoNode;
  for (; present > 0; --present) {
    parent = find(levelKey(levels, present), hashes[present - 1]);
    if (parent != kNoNode) break;
  }
  if (present == levels.count()) return parent;
  if (present == 0) parent = root();
  const std::string_view kept = keep(levels.address());
  for (std::size_t k = present + 1; k <= levels.count(); ++k) {
    const std::string_view key = kept.substr(0, levelKey(levels, k).size());
    parent = add(parent, key, key.size() - levelText(levels, k).size(), hashes[k - 1]);
    nodes_[parent].tag = tag;
  }
  return parent;
}

void SiteTree::remove(NodeId node) {
  const std::vector<NodeId> removed = subtree(node);
  if (std::ranges::find(removed, selected_) != removed.end()) select(selectedAfterRemoving(node));
  const NodeId above = parent(node);
  const std::size_t place = row(node);
  if (observer_ != nullptr) observer_->nodeWillBeRemoved(above, place);
  std::vector<NodeId>& siblings = nodes_[above].children;
  siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(place));
  for (std::size_t i = place; i < siblings.size(); ++i) --nodes_[siblings[i]].row;
  for (const NodeId gone : removed) {
    index_.erase(hashOf(key(gone)), gone);
    nodes_[gone] = {};
  }
  removed_ += removed.size();
  if (observer_ != nullptr) observer_->nodeWasRemoved();
}

void SiteTree::clear() {
  const BulkChange change(*this);
  nodes_.clear();
  removed_ = 0;
  index_.clear();
  blocks_.clear();
  freeInBlock_ = 0;
  selected_ = kNoNode;
  addRoot();
}

std::vector<std::string_view> SiteTree::collectSubtreeKeys(NodeId node) const {
  std::vector<std::string_view> keys;
  for (const NodeId below : subtree(node)) keys.push_back(key(below));
  return keys;
}

std::vector<NodeId> SiteTree::subtree(NodeId node) const {
  std::vector<NodeId> found;
  std::vector<NodeId> open{node};
  while (!open.empty()) {
    const NodeId next = open.back();
    open.pop_back();
    found.push_back(next);
    const std::vector<NodeId>& children = nodes_[next].children;
    open.insert(open.end(), children.rbegin(), children.rend());
  }
  return found;
}

NodeId SiteTree::selectedAfterRemoving(NodeId node) const {
  const NodeId above = parent(node);
  const std::size_t place = row(node);
  if (place + 1 < childCount(above)) return child(above, place + 1);
  return place > 0 ? child(above, place - 1) : above;
}

void SiteTree::reserve(std::size_t nodes) {
  nodes_.reserve(nodes_.size() + nodes);
  index_.reserve(nodes_.size() + nodes);
}

NodeId SiteTree::find(std::string_view key) const { return find(key, hashOf(key)); }

NodeId SiteTree::at(std::string_view key) const {
  const NodeId node = find(key);
  if (node == kNoNode) throw Failure(failure::kElementNotFound);
  return node;
}

std::string_view SiteTree::key(NodeId node) const {
  return {nodes_[node].key, nodes_[node].keyLength};
}

std::string_view SiteTree::text(NodeId node) const {
  return node == root() ? kRootText : key(node).substr(nodes_[node].textStart);
}

void SiteTree::select(NodeId node) {
  if (node == selected_) return;
  selected_ = node;
  if (observer_ != nullptr) observer_->selectionChanged(node);
}

NodeId SiteTree::find(std::string_view key, std::uint32_t hash) const {
  return index_.find(hash, [this, key](NodeId node) { return this->key(node) == key; });
}

NodeId SiteTree::add(NodeId parent, std::string_view key, std::size_t textStart,
                     std::uint32_t hash) {
  makeRoom(parent);
  const auto node = static_cast<NodeId>(nodes_.size());
  const std::size_t row = parent == kNoNode ? 0 : childCount(parent);
  if (observer_ != nullptr) observer_->nodeWillBeAdded(parent, row);
  nodes_.push_back({.key = key.data(),
                    .parent = parent,
                    .row = static_cast<std::uint32_t>(row),
                    .recordNumber = 0,
                    .keyLength = static_cast<std::uint16_t>(key.size()),
                    .textStart = static_cast<std::uint16_t>(textStart),
                    .tag = kNoTag,
                    .children = {}});
  if (parent != kNoNode) nodes_[parent].children.push_back(node);
  index_.insert(hash, node);
  if (observer_ != nullptr) observer_->nodeWasAdded(node);
  return node;
}

// All memory is allocated first, so that a node is added completely or not at all, and
// the observer is never notified of a node that is then not added.
void SiteTree::makeRoom(NodeId parent) {
  const auto growByOne = [](auto& items) {
    if (items.size() < items.capacity()) return;
    items.reserve(std::max<std::size_t>(4, 2 * items.size()));
  };
  growByOne(nodes_);
  if (parent != kNoNode) growByOne(nodes_[parent].children);
  index_.reserve(nodes_.size() + 1);
}

std::string_view SiteTree::keep(std::string_view address) {
  if (blocks_.empty() || address.size() > freeInBlock_) {
    const std::size_t size = std::max(kBlockSize, address.size());
    blocks_.push_back(std::make_unique<char[]>(size));
    freeInBlock_ = size;
  }
  // Blocks are filled from the end, so that freeInBlock_ alone says where the next
  // address goes.
  freeInBlock_ -= address.size();
  char* const place = blocks_.back().get() + freeInBlock_;
  std::copy(address.begin(), address.end(), place);
  return {place, address.size()};
}

SiteTree::BulkChange::BulkChange(SiteTree& tree)
    : tree_(tree), observer_(std::exchange(tree.observer_, nullptr)) {
  if (observer_ != nullptr) observer_->treeWillBeReset();
}

SiteTree::BulkChange::~BulkChange() {
  tree_.observer_ = observer_;
  if (observer_ != nullptr) observer_->treeWasReset();
}

}  // namespace quorrix
