// The plain controls that all forms use, with the names by which tests and assistive
// technology find them.
#pragma once

#include <QLabel>
#include <QPushButton>

namespace quorrix {

// The accessible name is for controls that show no caption of their own.
template <typename Control>
Control* named(Control* control, const char* name, const QString& accessibleName) {
  control->setObjectName(QString::fromLatin1(name));
  control->setAccessibleName(accessibleName);
  return control;
}

// `text` is never interpreted as markup.
[[nodiscard]] inline QLabel* makeLabel(const char* name, const QString& text, QWidget* parent) {
  auto* const label = new QLabel(text, parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setTextFormat(Qt::PlainText);
  return label;
}

[[nodiscard]] inline QPushButton* makeButton(const char* name, const QString& caption,
                                             QWidget* parent) {
  // The accessible name has no "&", which marks the mnemonic in the caption.
  return named(new QPushButton(caption, parent), name, QString(caption).remove(QLatin1Char('&')));
}

}  // namespace quorrix
