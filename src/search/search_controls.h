// The plain controls of the search dialogs, under their names.
#pragma once

#include <QLabel>
#include <QPushButton>

namespace quorrix {

[[nodiscard]] inline QLabel* makeLabel(const char* name, const QString& caption, QWidget* parent) {
  auto* const label = new QLabel(caption, parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setTextFormat(Qt::PlainText);
  return label;
}

[[nodiscard]] inline QPushButton* makeButton(const char* name, const QString& caption,
                                             QWidget* parent) {
  auto* const button = new QPushButton(caption, parent);
  button->setObjectName(QString::fromLatin1(name));
  return button;
}

}  // namespace quorrix
