// A list from which the user chooses one entry. Nothing is selected at first; the first
// key that moves the cursor then selects the current entry instead.
#pragma once

#include <QListWidget>

namespace quorrix {

class EntryList final : public QListWidget {
  Q_OBJECT

 public:
  using QListWidget::QListWidget;

  // -1 if nothing is selected. This is not the current row, which a list has as soon as
  // it has the focus.
  [[nodiscard]] int selectedRow() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace quorrix
