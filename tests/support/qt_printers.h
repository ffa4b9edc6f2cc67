// Makes failed expectations show Qt's values as text instead of as bytes.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QPoint& point, std::ostream* out) {
  *out << '(' << point.x() << ", " << point.y() << ')';
}

inline void PrintTo(const QSize& size, std::ostream* out) {
  *out << size.width() << " x " << size.height();
}

inline void PrintTo(const QRect& rect, std::ostream* out) {
  PrintTo(rect.size(), out);
  *out << " at ";
  PrintTo(rect.topLeft(), out);
}
