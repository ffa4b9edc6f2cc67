// The mouse pointer of a form during an operation.
#pragma once

#include <QPointer>
#include <QWidget>

namespace quorrix {

// The form's pointer is the hourglass as long as this object exists. The form may be
// destroyed before it. If two are nested on one form, the outer one restores the default.
class [[nodiscard]] Hourglass {
 public:
  explicit Hourglass(QWidget& form)
      : form_(&form), isOuter_(form.cursor().shape() != Qt::WaitCursor) {
    form.setCursor(Qt::WaitCursor);
  }

  ~Hourglass() {
    if (isOuter_ && !form_.isNull()) form_->unsetCursor();
  }

  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  QPointer<QWidget> form_;
  bool isOuter_;
};

}  // namespace quorrix
