#include "shell/qt_message_box.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLayoutItem>
#include <QMessageBox>

#include "shell/keep_in_front.h"
#include "shell/plain_text.h"
#include "shell/wrapping_label.h"

namespace quorrix {
namespace {

struct Look {
  QMessageBox::Icon icon;
  bool hasCancel;
  bool staysOnTop = false;
};

// A switch without a default, so that the compiler reports a missing enumerator.
constexpr Look lookOf(MessageBoxStyle style) {
  switch (style) {
    case MessageBoxStyle::Critical:
      return {QMessageBox::Critical, false};
    case MessageBoxStyle::Exclamation:
      return {QMessageBox::Warning, false};
    case MessageBoxStyle::Information:
      return {QMessageBox::Information, false};
    case MessageBoxStyle::ConfirmQuestion:
      return {QMessageBox::Question, true};
    case MessageBoxStyle::ConfirmWarning:
      return {QMessageBox::Warning, true};
    case MessageBoxStyle::SystemModal:
      return {QMessageBox::NoIcon, false, true};
  }
  return {QMessageBox::NoIcon, false};  // not an enumerator
}

// Shows its text in a label that wraps long words, which Qt's own label does not. The
// text cannot be selected in it, so the copy key copies all of it.
class WrappingMessageBox final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

  // Replaces Qt's own label. Call this after everything else is set, because a change of
  // icon or style lays the box out again with Qt's own label.
  void wrapText() {
    if (label_ == nullptr) {
      label_ = new WrappingLabel(text(), this);
      label_->setObjectName(QStringLiteral("MessageText"));
    }
    auto* const own = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (own == nullptr) return;
    delete layout()->replaceWidget(own, label_);
    own->hide();
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (!event->matches(QKeySequence::Copy)) return QMessageBox::keyPressEvent(event);
    QGuiApplication::clipboard()->setText(text());
    event->accept();
  }

  void changeEvent(QEvent* event) override {
    QMessageBox::changeEvent(event);
    if (event->type() == QEvent::StyleChange && label_ != nullptr) wrapText();
  }

 private:
  WrappingLabel* label_ = nullptr;
};

}  // namespace

MessageBoxButton QtMessageBox::show(std::string_view text, MessageBoxStyle style) {
  const Look look = lookOf(style);
  WrappingMessageBox box(QApplication::activeWindow());
  box.setObjectName(QStringLiteral("MessageBox"));
  box.setWindowTitle(QStringLiteral("Quorrix"));
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  box.setIcon(look.icon);
  box.setStandardButtons(look.hasCancel ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::Ok);
  box.setDefaultButton(look.hasCancel ? QMessageBox::Cancel : QMessageBox::Ok);
  // Some desktops put icons on the buttons of message boxes. The buttons of the dialogs
  // have none.
  for (QAbstractButton* const button : box.buttons()) button->setIcon({});
  box.setWindowFlag(Qt::WindowStaysOnTopHint, look.staysOnTop);
  keepInFront(box);
  box.wrapText();
  // The program may end while the box is open. Then no button was pressed, and the answer is
  // Cancel if there is such a button.
  const bool isOk = box.exec() == QMessageBox::Ok;
  return isOk || !look.hasCancel ? MessageBoxButton::Ok : MessageBoxButton::Cancel;
}

}  // namespace quorrix
