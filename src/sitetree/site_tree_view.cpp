#include "sitetree/site_tree_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStringBuilder>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

#include "datafiles/site_address.h"
#include "shell/plain_text.h"
#include "shell/single_line.h"

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

SiteTreeView::SiteTreeView(SiteTree& tree, const CodePage& codePage, QWidget* parent)
    : QTreeView(parent), tree_(tree), codePage_(codePage), model_(tree, codePage) {
  setObjectName(QStringLiteral("TreeView"));
  setAccessibleName(QStringLiteral("Recorded sites"));
  setModel(&model_);
  setItemDelegate(new AddressDelegate(this));
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);  // edited text would no longer match the key
  setSelectionMode(SingleSelection);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::Fixed);
  header()->setResizeContentsPrecision(0);  // only the rows on screen are measured
  connect(&model_, &SiteTreeModel::treeSelectionChanged, this, &SiteTreeView::showSelection);
  connect(&model_, &SiteTreeModel::modelReset, this, [this] { widestRow_ = 0; });
  connect(&model_, &SiteTreeModel::modelReset, this, &SiteTreeView::showSelection);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &SiteTreeView::followSelection);
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

void SiteTreeView::makeVisible(NodeId node, ScrollHint where) {
  for (NodeId above = tree_.parent(node); above != kNoNode; above = tree_.parent(above)) {
    expand(model_.indexOf(above));
  }
  if (where == PositionAtCenter) return showInTheMiddle(model_.indexOf(node));
  scrollTo(model_.indexOf(node), where);
}

// Qt counts a row that loses its last child as expanded. Rows that it gets later would then
// not be shown.
void SiteTreeView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
  if (end - start + 1 == model_.rowCount(parent)) collapse(parent);
  QTreeView::rowsAboutToBeRemoved(parent, start, end);
}

// PositionAtCenter also scrolls sideways, to the middle of a row that is wider than the
// view. EnsureVisible then scrolls back to the beginning of the row, where its text is.
void SiteTreeView::showInTheMiddle(const QModelIndex& index) {
  scrollTo(index, PositionAtCenter);
  scrollTo(index, EnsureVisible);
}

// The base class makes a string of each row, which takes 0.2 s for each key when 200,000
// are open. A match may be anywhere, so the rows around it are shown, too.
void SiteTreeView::keyboardSearch(const QString& search) {
  const bool isGoingOn =
      sinceTyping_.isValid() && !sinceTyping_.hasExpired(QApplication::keyboardInputInterval());
  sinceTyping_.start();
  if (!isGoingOn || search.isEmpty()) typed_.clear();
  const auto typed = codePage_.exactFromUtf8(search.toStdString());
  // No address has a character outside the code page, and an empty tree has no rows.
  if (search.isEmpty() || !typed || tree_.root() == kNoNode) return;
  typed_ += *typed;
  const bool isRepeated = typed_.find_first_not_of(typed_.front()) == std::string::npos;
  const std::string_view sought = isRepeated ? std::string_view(typed_).substr(0, 1) : typed_;
  const NodeId first = visibleFrom(tree_.selected());
  const bool isFirstPassed = !isGoingOn || (isRepeated && typed_.size() > 1);
  NodeId node = isFirstPassed ? below(first) : first;
  do {
    if (!codePage_.beginsWithIgnoringCase(tree_.text(node), sought)) {
      node = below(node);
      continue;
    }
    // Only matching nodes are checked, because finding out what is expanded takes longer
    // than comparing a text.
    const NodeId visible = visibleFrom(node);
    if (visible == node) {
      const QModelIndex found = model_.indexOf(node);
      setCurrentIndex(found);
      return showInTheMiddle(found);
    }
    node = after(visible);
  } while (node != first);
}

// The next row as if all branches were expanded; after the last row, the root.
NodeId SiteTreeView::below(NodeId node) const {
  return tree_.childCount(node) > 0 ? tree_.child(node, 0) : after(node);
}

// The row after the node's whole branch; after the last row, the root.
NodeId SiteTreeView::after(NodeId node) const {
  for (; node != tree_.root(); node = tree_.parent(node)) {
    const NodeId parent = tree_.parent(node);
    const std::size_t row = tree_.row(node) + 1;
    if (row < tree_.childCount(parent)) return tree_.child(parent, row);
  }
  return node;
}

// The node itself, or the outermost collapsed node that contains it.
NodeId SiteTreeView::visibleFrom(NodeId node) const {
  for (NodeId above = tree_.parent(node); above != kNoNode; above = tree_.parent(above)) {
    if (!isExpanded(model_.indexOf(above))) node = above;
  }
  return node;
}

void SiteTreeView::mouseReleaseEvent(QMouseEvent* event) {
  QTreeView::mouseReleaseEvent(event);
  const QPoint at = event->position().toPoint();
  emit mouseUp(codeOf(event->button()), shiftCodeOf(event->modifiers()), at.x(), at.y());
}

// Some desktops send the mouse's context menu request on the press, others on the
// release. So only the keyboard's request is handled here.
void SiteTreeView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Keyboard) return;
  releaseRightButtonAtCurrentRow(event->modifiers());
}

void SiteTreeView::keyPressEvent(QKeyEvent* event) {
  // Shift+F10 opens the context menu on keyboards without the menu key.
  if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
    return releaseRightButtonAtCurrentRow(Qt::NoModifier);
  }
  if (event->matches(QKeySequence::Copy)) return copyAddress();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (!event->isAutoRepeat()) emit enterPressed();
    return;
  }
  QTreeView::keyPressEvent(event);
}

// Qt would copy the row's text, which is one segment of the address.
void SiteTreeView::copyAddress() const {
  const NodeId node = tree_.selected();
  if (node == tree_.root()) return;
  QApplication::clipboard()->setText(toQString(codePage_, schemePrefix(tree_.tag(node))) %
                                     toQString(codePage_, tree_.key(node)));
}

// The position is near the beginning of the row's text, because a long row ends outside
// the window.
void SiteTreeView::releaseRightButtonAtCurrentRow(Qt::KeyboardModifiers modifiers) {
  scrollTo(currentIndex());
  const QRect row = visualRect(currentIndex()).intersected(viewport()->rect());
  const QPoint inText(row.left() + row.height(), row.center().y());
  const QPoint at = QStyle::visualPos(layoutDirection(), row, inText);
  emit mouseUp(mouse_button::kRight, shiftCodeOf(modifiers), at.x(), at.y());
}

void SiteTreeView::scrollContentsBy(int dx, int dy) {
  QTreeView::scrollContentsBy(dx, dy);
  QToolTip::hideText();  // another row is under the pointer now
  if (dy != 0) widenToVisibleRows();
}

void SiteTreeView::updateGeometries() {
  widenToVisibleRows();
  QTreeView::updateGeometries();
}

// The column is as wide as the widest row, so that long segments can be scrolled to and
// are not cut off. It never becomes narrower during scrolling, because the rows would
// shift while the user reads them.
void SiteTreeView::widenToVisibleRows() {
  widestRow_ = std::max(widestRow_, sizeHintForColumn(0));
  header()->resizeSection(0, std::max(widestRow_, viewport()->width()));
}

// Measures the rows again, because they may have become narrower. Qt lays them out before
// it takes the indentation from a new style, so they are laid out again after that.
void SiteTreeView::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  widestRow_ = 0;
  scheduleDelayedItemsLayout();
}

void SiteTreeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (!current.isValid()) return;
  const NodeId node = SiteTreeModel::nodeOf(current);
  if (node == tree_.selected()) return;
  tree_.select(node);
  emit nodeChosen();
}

// Assistive technology changes the selection without changing the current row.
void SiteTreeView::followSelection() {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  if (selected.isEmpty()) {
    selectionModel()->select(currentIndex(), QItemSelectionModel::Select);
  } else if (selected.first() != currentIndex()) {
    setCurrentIndex(selected.first());
  }
}

// The tree always has a selected node, so its row must stay highlighted. A click on empty
// space or a Ctrl+click on the row would otherwise remove the highlight.
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
