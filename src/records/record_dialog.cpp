#include "records/record_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringBuilder>

#include "datafiles/record_layouts.h"
#include "records/line_box.h"
#include "shell/controls.h"
#include "shell/guarded.h"
#include "shell/keep_in_front.h"
#include "shell/plain_text.h"

namespace quorrix {

RecordDialog::RecordDialog(const RecordDialogParts& parts, const char* name, const QString& caption)
    : QDialog(&parts.mainWindow), parts_(parts), caption_(caption) {
  setObjectName(QString::fromLatin1(name));
  setWindowTitle(caption_);
  keepInFront(*this);
}

std::string RecordDialog::siteKey() const {
  return std::string(parts_.tree.key(parts_.tree.selected()));
}

QString RecordDialog::toQString(std::string_view text) const {
  return quorrix::toQString(parts_.codePage, text);
}

std::string RecordDialog::fromQString(const QString& text) const {
  return quorrix::fromQString(parts_.codePage, text);
}

void RecordDialog::showSiteInCaption() {
  setWindowTitle(caption_ % QStringLiteral(" - ") % asWindowTitle(toQString(siteKey())));
}

void RecordDialog::runGuarded(FailureFamily family, const std::function<void()>& operation) {
  guarded(*this, parts_.messageBox, family, operation);
}

void RecordDialog::runLoadGuarded(FailureFamily family, const std::function<void()>& operation) {
  guarded(*parentWidget(), parts_.messageBox, family, operation);
}

bool RecordDialog::isConfirmed(std::string_view question) {
  return parts_.messageBox.show(question, MessageBoxStyle::ConfirmQuestion) == MessageBoxButton::Ok;
}

QLabel* RecordDialog::makePrompt(const QString& text) {
  QLabel* const prompt = makeLabel("", text, this);
  prompt->setWordWrap(true);
  return prompt;
}

QLayout* RecordDialog::rowOfButtons(std::initializer_list<QPushButton*> buttons) {
  auto* const row = new QHBoxLayout;
  row->addStretch();
  for (QPushButton* const button : buttons) row->addWidget(button);
  return row;
}

void RecordDialog::resizeToWidth(int width) { resize(width, layout()->totalHeightForWidth(width)); }

QLineEdit* RecordDialog::makeLineBox(const char* name, const QString& label,
                                     std::size_t fieldWidth) {
  return named(new LineBox(fieldWidth - kFieldMargin, parts_.codePage, this), name, label);
}

}  // namespace quorrix
