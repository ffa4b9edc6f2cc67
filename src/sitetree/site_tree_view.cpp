#include "sitetree/site_tree_view.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMouseEvent>

namespace quorrix {
namespace {

int codeOf(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return mouse_button::kLeft;
    case Qt::RightButton:
      return mouse_button::kRight;
    case Qt::MiddleButton:
      return mouse_button::kMiddle;
    default:
      return 0;
  }
}

int shiftCodeOf(Qt::KeyboardModifiers modifiers) {
  int code = 0;
  if (modifiers.testFlag(Qt::ShiftModifier)) code += 1;
  if (modifiers.testFlag(Qt::ControlModifier)) code += 2;
  if (modifiers.testFlag(Qt::AltModifier)) code += 4;
  return code;
}

}  // namespace

SiteTreeView::SiteTreeView(SiteTree& tree, QWidget* parent)
    : QTreeView(parent), tree_(tree), model_(tree) {
  setObjectName(QStringLiteral("TreeView"));
  setAccessibleName(tr("Recorded sites"));
  setModel(&model_);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);  // an edited text would no longer be its key's
  setSelectionMode(SingleSelection);
  // Long segments are scrolled to, not cut; only the rows on screen are measured.
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setResizeContentsPrecision(0);
  connect(&model_, &SiteTreeModel::treeSelectionChanged, this, &SiteTreeView::showSelection);
  connect(&model_, &SiteTreeModel::modelReset, this, &SiteTreeView::showSelection);
  showSelection();
}

void SiteTreeView::expandDNSNodes() { expand(model_.indexOf(tree_.root())); }

void SiteTreeView::expandAll(NodeId node, bool addressFound) {
  const QModelIndex index = model_.indexOf(node);
  if (addressFound) {
    expand(index);
  } else {
    expandRecursively(index);
  }
}

void SiteTreeView::collapseNode(NodeId node) { collapse(model_.indexOf(node)); }

void SiteTreeView::makeVisible(NodeId node) {
  for (NodeId above = tree_.parent(node); above != kNoNode; above = tree_.parent(above)) {
    expand(model_.indexOf(above));
  }
  scrollTo(model_.indexOf(node));
}

void SiteTreeView::mouseReleaseEvent(QMouseEvent* event) {
  QTreeView::mouseReleaseEvent(event);
  const QPoint at = event->position().toPoint();
  emit mouseUp(codeOf(event->button()), shiftCodeOf(event->modifiers()), at.x(), at.y());
}

// The mouse's own context menu request comes on the press on some desktops, on
// the release on others; only the keyboard's is listened to here.
void SiteTreeView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Keyboard) return;
  const QPoint at = visualRect(currentIndex()).center();
  emit mouseUp(mouse_button::kRight, shiftCodeOf(event->modifiers()), at.x(), at.y());
}

void SiteTreeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (current.isValid()) tree_.select(model_.nodeOf(current));
}

// The tree always has a selected node, so its row stays highlighted: clicks into
// empty space and with Ctrl on the row would else take the highlight away.
QItemSelectionModel::SelectionFlags SiteTreeView::selectionCommand(const QModelIndex& index,
                                                                   const QEvent* event) const {
  const auto command = QTreeView::selectionCommand(index, event);
  const bool unselects = !index.isValid() || command.testFlag(QItemSelectionModel::Deselect);
  return unselects ? QItemSelectionModel::NoUpdate : command;
}

void SiteTreeView::showSelection() {
  const QModelIndex selected = model_.indexOf(tree_.selected());
  if (selected != currentIndex()) setCurrentIndex(selected);
}

}  // namespace quorrix
