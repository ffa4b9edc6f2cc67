#include "shell/single_line.h"

#include <QApplication>
#include <QPainter>
#include <QStringBuilder>
#include <QStyle>
#include <QTextOption>

namespace quorrix {
namespace {

constexpr QChar kLeftToRightIsolate(0x2066);
constexpr QChar kFirstStrongIsolate(0x2068);
constexpr QChar kEndOfIsolate(0x2069);

}  // namespace

void drawSingleLine(QLabel& label, const QRect& area, Qt::Alignment alignment) {
  const QString text = label.text();
  const QString shown = label.fontMetrics().elidedText(text, Qt::ElideRight, area.width());
  QTextOption option(QStyle::visualAlignment(label.layoutDirection(), alignment) |
                     Qt::AlignAbsolute);
  option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  option.setWrapMode(QTextOption::NoWrap);
  QPainter painter(&label);
  painter.setPen(label.palette().color(label.foregroundRole()));
  painter.drawText(area, shown, option);
}

QString inItsOwnDirection(const QString& text) {
  if (!QApplication::isRightToLeft()) return text;
  return kFirstStrongIsolate % text % kEndOfIsolate;
}

QString AddressDelegate::displayText(const QVariant& value, const QLocale& locale) const {
  QString text = QStyledItemDelegate::displayText(value, locale);
  if (!QApplication::isRightToLeft()) return text;
  return kLeftToRightIsolate % text % kEndOfIsolate;
}

}  // namespace quorrix
