#include "archives/folder_list.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

#include "archives/shown_path.h"
#include "platform/failure.h"
#include "shell/single_line.h"

namespace quorrix {
namespace {

constexpr int kDepthRole = Qt::UserRole;
constexpr int kIndent = 10;  // pixels for each folder above
constexpr int kIconGap = 3;  // pixels between an icon and its name
constexpr int kFewestRows = 7;

// Only the name is highlighted, because in most palettes a folder icon is hard to see on
// the highlight colour.
class FolderDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const QRect row = option.rect;
    QRect icon = row;
    icon.setLeft(row.left() + indentOf(index));
    icon.setWidth(iconSize(option, index).width());
    QStyleOptionViewItem name = option;
    name.rect.setLeft(icon.right() + kIconGap);
    name.rect = QStyle::visualRect(option.direction, row, name.rect);
    icon = QStyle::visualRect(option.direction, row, icon);
    index.data(Qt::DecorationRole).value<QIcon>().paint(painter, icon);
    QStyledItemDelegate::paint(painter, name, index);
  }

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override {
    const QSize icon = iconSize(option, index);
    const QSize name = QStyledItemDelegate::sizeHint(option, index);
    return {indentOf(index) + icon.width() + kIconGap + name.width(),
            std::max(icon.height(), name.height())};
  }

  // A name keeps its own direction.
  [[nodiscard]] QString displayText(const QVariant& value, const QLocale& locale) const override {
    return inItsOwnDirection(QStyledItemDelegate::displayText(value, locale));
  }

 protected:
  // Without the icon, which paint() draws itself.
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->features &=
        ~QStyleOptionViewItem::ViewItemFeatures(QStyleOptionViewItem::HasDecoration);
    option->icon = {};
  }

 private:
  // The icon's own size, because styles reserve more space than the icon needs.
  static QSize iconSize(const QStyleOptionViewItem& option, const QModelIndex& index) {
    return index.data(Qt::DecorationRole).value<QIcon>().actualSize(option.decorationSize);
  }

  static int indentOf(const QModelIndex& index) { return kIndent * index.data(kDepthRole).toInt(); }
};

// Without a trailing separator, so that both spellings of a path compare equal.
Path withoutLastSeparator(const Path& path) {
  return path.has_filename() || path == path.root_path() ? path : path.parent_path();
}

}  // namespace

FolderList::FolderList(FileSystem& files, const Path& start, QWidget* parent)
    : QListWidget(parent), files_(files), path_(start.root_path()) {
  setItemDelegate(new FolderDelegate(this));
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setMinimumHeight(kFewestRows * fontMetrics().lineSpacing());
  connect(this, &QListWidget::currentRowChanged, this, &FolderList::showWhereNamesBegin);
  connect(this, &QListWidget::itemDoubleClicked, this,
          [this](const QListWidgetItem* item) { openRow(row(item)); });
  try {
    setPath(path_);
  } catch (const Failure&) {
    clear();
  }
}

void FolderList::setPath(const Path& path) {
  const Path opened = withoutLastSeparator(path);
  const bool isAnother = opened != path_;
  open(opened, rowsOf(opened));
  if (isAnother && changed_) changed_();
}

void FolderList::setPathOrStay(const Path& path) {
  const Path pathBefore = path_;
  const std::vector<Row> rowsBefore = rows_;
  try {
    setPath(path);
  } catch (...) {
    open(pathBefore, rowsBefore);
    throw;
  }
}

std::vector<FolderList::Row> FolderList::rowsOf(const Path& path) {
  Path level = path.root_path();
  std::vector<Row> rows{{.path = level, .depth = 0, .isOpen = true}};
  for (const Path& name : path.relative_path()) {
    level /= name;
    rows.push_back({.path = level, .depth = rows.back().depth + 1, .isOpen = true});
  }
  const int depth = rows.back().depth + 1;
  for (const Path& name : files_.folderNames(path)) {
    rows.push_back({.path = path / name, .depth = depth, .isOpen = false});
  }
  return rows;
}

void FolderList::open(const Path& path, std::vector<Row> rows) {
  path_ = path;
  rows_ = std::move(rows);
  showRows();
}

void FolderList::showRows() {
  const QIcon closedFolder = style()->standardIcon(QStyle::SP_DirClosedIcon);
  const QIcon openFolder = style()->standardIcon(QStyle::SP_DirOpenIcon);
  keyboardSearch({});  // forgets what was typed in the previous folder
  clear();
  int opened = 0;
  for (const Row& row : rows_) {
    const bool isRoot = row.depth == 0;
    auto* const item = new QListWidgetItem(rowTextOfPath(isRoot ? row.path : row.path.filename()));
    if (row.isOpen) opened = count();
    item->setIcon(row.isOpen ? openFolder : closedFolder);
    item->setData(kDepthRole, row.depth);
    addItem(item);
  }
  setCurrentRow(opened);
}

// A list scrolls to its current row only vertically, but the name of a deep folder begins
// far to the right.
void FolderList::showWhereNamesBegin(int row) {
  if (row < 0) return;
  const int start = kIndent * item(row)->data(kDepthRole).toInt();
  const int half = viewport()->width() / 2;
  executeDelayedItemsLayout();
  horizontalScrollBar()->setValue(start > half ? start - half / 2 : 0);
}

// The list gets its width only when the dialog is shown.
void FolderList::resizeEvent(QResizeEvent* event) {
  QListWidget::resizeEvent(event);
  showWhereNamesBegin(currentRow());
}

bool FolderList::openRow(int row) {
  int number = 0;
  try {
    const Path chosen = rows_[static_cast<std::size_t>(row)].path;
    setPathOrStay(chosen);
    return true;
  } catch (...) {
    number = currentFailureNumber();
  }
  emit openFailed(number);
  return false;
}

bool FolderList::openHighlighted() {
  const QList<QListWidgetItem*> items = selectedItems();
  if (items.isEmpty()) return true;
  const int highlighted = row(items.first());
  const bool isOpen = rows_[static_cast<std::size_t>(highlighted)].path == path_;
  return isOpen || openRow(highlighted);
}

void FolderList::highlightOpenFolder() {
  const auto isOpen = [this](const Row& row) { return row.path == path_; };
  const auto found = std::ranges::find_if(rows_, isOpen);
  if (found != rows_.end()) setCurrentRow(static_cast<int>(found - rows_.begin()));
}

// Otherwise Enter would also press the dialog's default button.
void FolderList::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isEnter) return QListWidget::keyPressEvent(event);
  if (currentRow() >= 0) openRow(currentRow());
}

}  // namespace quorrix
