#include "shell/qt_message_box.h"

#include <QApplication>
#include <QMessageBox>
#include <algorithm>
#include <iterator>

#include "shell/keep_in_front.h"
#include "shell/plain_text.h"

namespace quorrix {
namespace {

struct StyleRow {
  MessageBoxStyle style;
  QMessageBox::Icon icon;
  bool hasCancel;
  bool staysOnTop;
};

constexpr StyleRow kStyles[] = {
    {MessageBoxStyle::Critical, QMessageBox::Critical, false, false},
    {MessageBoxStyle::Exclamation, QMessageBox::Warning, false, false},
    {MessageBoxStyle::Information, QMessageBox::Information, false, false},
    {MessageBoxStyle::ConfirmQuestion, QMessageBox::Question, true, false},
    {MessageBoxStyle::ConfirmWarning, QMessageBox::Warning, true, false},
    {MessageBoxStyle::SystemModal, QMessageBox::NoIcon, false, true},
};

const StyleRow& rowOf(MessageBoxStyle style) {
  return *std::find_if(std::begin(kStyles), std::end(kStyles),
                       [style](const StyleRow& row) { return row.style == style; });
}

}  // namespace

MessageBoxButton QtMessageBox::show(std::string_view text, MessageBoxStyle style) {
  const StyleRow& row = rowOf(style);
  QMessageBox box(QApplication::activeWindow());
  box.setObjectName(QStringLiteral("MessageBox"));
  box.setWindowTitle(QStringLiteral("Quorrix"));
  box.setTextFormat(Qt::PlainText);
  box.setText(asWrappingText(toQString(text)));
  box.setIcon(row.icon);
  box.setStandardButtons(row.hasCancel ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::Ok);
  box.setDefaultButton(row.hasCancel ? QMessageBox::Cancel : QMessageBox::Ok);
  box.setWindowFlag(Qt::WindowStaysOnTopHint, row.staysOnTop);
  keepInFront(box);
  // When the program ends meanwhile there is no answer, and only OK goes on.
  const bool isOk = box.exec() == QMessageBox::Ok;
  return isOk || !row.hasCancel ? MessageBoxButton::Ok : MessageBoxButton::Cancel;
}

}  // namespace quorrix
