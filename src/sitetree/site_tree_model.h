// Presents a SiteTree to Qt's views. The model stores no nodes: an index encodes the
// node's number, and the tree notifies the model of changes.
#pragma once

#include <QAbstractItemModel>
#include <functional>

#include "platform/code_page.h"
#include "sitetree/site_tree.h"

namespace quorrix {

class SiteTreeModel final : public QAbstractItemModel, private SiteTreeObserver {
  Q_OBJECT

 public:
  // Both must outlive the model.
  SiteTreeModel(SiteTree& tree, const CodePage& codePage);
  ~SiteTreeModel() override;

  // Sets the function that returns the tool tip of a node; it must not throw.
  void describeBy(std::function<QString(NodeId)> describe) { describe_ = std::move(describe); }

  [[nodiscard]] static NodeId nodeOf(const QModelIndex& index);
  [[nodiscard]] QModelIndex indexOf(NodeId node) const;

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
  [[nodiscard]] bool hasChildren(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

 signals:
  void treeSelectionChanged(const QModelIndex& selected);

 private:
  void treeWillBeReset() override;
  void treeWasReset() override;
  void nodeWillBeAdded(NodeId parent, std::size_t row) override;
  void nodeWasAdded(NodeId node) override;
  void nodeWillBeRemoved(NodeId parent, std::size_t row) override;
  void nodeWasRemoved() override;
  void selectionChanged(NodeId node) override;

  SiteTree& tree_;
  const CodePage& codePage_;
  std::function<QString(NodeId)> describe_;
};

}  // namespace quorrix
