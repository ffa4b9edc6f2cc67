#include "shell/entry_list.h"

#include <QKeyEvent>
#include <algorithm>

namespace quorrix {

int EntryList::selectedRow() const {
  const auto selected = selectedItems();
  return selected.isEmpty() ? -1 : row(selected.first());
}

void EntryList::keyPressEvent(QKeyEvent* event) {
  const bool isMove =
      event->key() == Qt::Key_Down || event->key() == Qt::Key_Up || event->key() == Qt::Key_Home;
  if (isMove && selectedRow() < 0 && count() > 0) {
    return setCurrentRow(std::max(currentRow(), 0), QItemSelectionModel::ClearAndSelect);
  }
  QListWidget::keyPressEvent(event);
}

}  // namespace quorrix
