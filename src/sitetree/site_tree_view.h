// The site tree on screen, the main window's "TreeView". Its current row and the tree's
// selection are kept in sync.
#pragma once

#include <QElapsedTimer>
#include <QTreeView>
#include <string>

#include "platform/code_page.h"
#include "sitetree/site_tree.h"
#include "sitetree/site_tree_model.h"

namespace quorrix {

// Codes of a released mouse button. The keyboard's menu key counts as the right button.
namespace mouse_button {
inline constexpr int kLeft = 1;
inline constexpr int kRight = 2;
inline constexpr int kMiddle = 4;
}  // namespace mouse_button

class SiteTreeView final : public QTreeView {
  Q_OBJECT

 public:
  // The tree and the page must outlive the view.
  SiteTreeView(SiteTree& tree, const CodePage& codePage, QWidget* parent = nullptr);

  // Sets the function that returns the tool tip of a node; it must not throw.
  void describeBy(std::function<QString(NodeId)> describe) {
    model_.describeBy(std::move(describe));
  }

  // Expands the root, so that all hosts are visible.
  void expandDNSNodes();

  // Expands the node and, unless the last search found its address, everything below it.
  void expandAll(NodeId node, bool addressFound);

  // Collapses only this node. Nodes that are expanded below it are expanded again when it
  // is.
  void collapseNode(NodeId node);

  // Expands the node's ancestors and scrolls to it: no further than needed, or until it is in
  // the middle of the view.
  void makeVisible(NodeId node, ScrollHint where = EnsureVisible);

  // Selects the next row that begins with the text that the user types. Typing the same
  // letter repeatedly steps from match to match. Collapsed branches are not searched.
  void keyboardSearch(const QString& search) override;

 signals:
  // The user selected another node, by mouse or keyboard. When the program selects one in
  // the tree, this is not emitted.
  void nodeChosen();

  // Enter was pressed on the selected node.
  void enterPressed();

  // A mouse button was released over the tree, including its empty space. `shift` is the
  // sum of 1 for Shift, 2 for Ctrl and 4 for Alt; x and y are pixels in the viewport.
  void mouseUp(int button, int shift, int x, int y);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void updateGeometries() override;
  void changeEvent(QEvent* event) override;
  void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
      const QModelIndex& index, const QEvent* event) const override;

 private:
  void showSelection();
  void followSelection();
  void copyAddress() const;
  void showInTheMiddle(const QModelIndex& index);
  [[nodiscard]] NodeId below(NodeId node) const;
  [[nodiscard]] NodeId after(NodeId node) const;
  [[nodiscard]] NodeId visibleFrom(NodeId node) const;
  void releaseRightButtonAtCurrentRow(Qt::KeyboardModifiers modifiers);
  void widenToVisibleRows();

  SiteTree& tree_;
  const CodePage& codePage_;
  SiteTreeModel model_;
  int widestRow_ = 0;  // in pixels, among the rows that have been on screen
  std::string typed_;
  QElapsedTimer sinceTyping_;
};

}  // namespace quorrix
