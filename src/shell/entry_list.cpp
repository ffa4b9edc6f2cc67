#include "shell/entry_list.h"

#include "shell/select_first.h"

namespace quorrix {

int EntryList::selectedRow() const {
  const auto selected = selectedItems();
  return selected.isEmpty() ? -1 : row(selected.first());
}

void EntryList::keyPressEvent(QKeyEvent* event) {
  if (!selectByFirstMove(*this, *event)) QListWidget::keyPressEvent(event);
}

}  // namespace quorrix
