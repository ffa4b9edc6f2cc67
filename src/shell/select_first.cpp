#include "shell/select_first.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <algorithm>

namespace quorrix {

bool selectByFirstMove(QAbstractItemView& list, const QKeyEvent& key) {
  const bool isMove =
      key.key() == Qt::Key_Down || key.key() == Qt::Key_Up || key.key() == Qt::Key_Home;
  const QAbstractItemModel& model = *list.model();
  if (!isMove || list.selectionModel()->hasSelection() || model.rowCount() == 0) return false;
  const int row = std::max(list.currentIndex().row(), 0);
  list.selectionModel()->setCurrentIndex(model.index(row, 0), QItemSelectionModel::ClearAndSelect);
  return true;
}

}  // namespace quorrix
