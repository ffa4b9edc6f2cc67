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

// A switch without a default, so that the compiler names an enumerator that is missing.
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
  return {QMessageBox::NoIcon, false};  // no enumerator at all
}

// Shows its text in a label that wraps long words, which the toolkit's own does not. The
// text cannot be selected there, so the key for copying copies all of it.
class WrappingMessageBox final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

  // Puts the label in the place of the toolkit's. Call it when everything else is set:
  // a change of icon or style lays the box out again, with the toolkit's own label.
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
  // Some desktops put icons on the buttons of messages; those of the dialogs have none.
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
