// A list from which the user chooses one entry. Nothing is selected at first; the
// first key that moves the cursor then selects the entry where it stands.
#pragma once

#include <QListWidget>

namespace quorrix {

class EntryList final : public QListWidget {
  Q_OBJECT

 public:
  using QListWidget::QListWidget;

  // -1 for none. Not the current row: a list has one as soon as it has the focus.
  [[nodiscard]] int selectedRow() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace quorrix
