#include "search/search_dialog.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "datafiles/access_stamp.h"
#include "platform/failure.h"
#include "search/up_down.h"
#include "shell/centre_over.h"
#include "shell/controls.h"
#include "shell/guarded.h"
#include "shell/pointer.h"

namespace quorrix {
namespace {

constexpr UpDown::Range kMonths{1, 12};
constexpr UpDown::Range kDays{1, 31};
constexpr UpDown::Range kYears{1999, 2098};  // the years that two digits can express

constexpr int kGap = 8;  // pixels, between controls that do not belong together

void focusAndSelect(QLineEdit& box) {
  box.setFocus();
  box.selectAll();
}

}  // namespace

SearchDialog::SearchDialog(Parts parts) : QDialog(&parts.mainWindow), parts_(std::move(parts)) {
  setObjectName(QStringLiteral("SearchDialog"));
  setWindowTitle(QStringLiteral("Search Display"));

  // Created in reading order, which is also the Tab order.
  QLabel* const Label1 = makeLabel(
      "Label1", QStringLiteral("Enter search criteria as necessary and then click OK."), this);
  Option1_ = makeOption("Option1", QStringLiteral("Site address"));
  Option2_ = makeOption("Option2", QStringLiteral("Date"));
  Option3_ = makeOption("Option3", QStringLiteral("Site address and date"));
  QLabel* const Label4 = makeLabel("Label4", QStringLiteral("Website address contains"), this);
  Text3_ = new QLineEdit(this);
  Text3_->setObjectName(QStringLiteral("Text3"));
  Text3_->setAccessibleName(Label4->text());
  Label4->setBuddy(Text3_);
  QLabel* const Label5 = makeLabel("Label5", QStringLiteral("Accessed after"), this);
  date_ = new QWidget(this);
  date_->setLayout(rowOfDateBoxes());
  QPushButton* const OKButton = makeButton("OKButton", QStringLiteral("OK"), this);
  QPushButton* const CancelButton = makeButton("CancelButton", QStringLiteral("Cancel"), this);
  OKButton->setDefault(true);
  connect(OKButton, &QPushButton::clicked, this, &SearchDialog::OKButton_Click);
  connect(CancelButton, &QPushButton::clicked, this, &SearchDialog::CancelButton_Click);
  for (QWidget* const widget : {static_cast<QWidget*>(Label4), static_cast<QWidget*>(Text3_)}) {
    connect(Option2_, &QRadioButton::toggled, widget, &QWidget::setDisabled);
  }
  for (QWidget* const widget : {static_cast<QWidget*>(Label5), date_}) {
    connect(Option1_, &QRadioButton::toggled, widget, &QWidget::setDisabled);
  }

  auto* const criteria = new QGridLayout;
  criteria->addWidget(makeLabel("Label8", QStringLiteral("Search on"), this), 0, 0);
  criteria->addWidget(Option1_, 0, 1);
  criteria->addWidget(Option2_, 1, 1);
  criteria->addWidget(Option3_, 2, 1);
  criteria->addWidget(Label4, 3, 0);
  criteria->addWidget(Text3_, 3, 1);
  criteria->addWidget(Label5, 4, 0);
  criteria->addWidget(date_, 4, 1);
  criteria->setColumnStretch(1, 1);

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(OKButton);
  buttons->addWidget(CancelButton);

  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(Label1);
  layout->addLayout(criteria);
  layout->addSpacing(layout->spacing());
  layout->addStretch();
  layout->addLayout(buttons);
  resize(sizeHint().expandedTo({460, 0}));
  Text3_->setFocus();
}

QRadioButton* SearchDialog::makeOption(const char* name, const QString& caption) {
  auto* const option = new QRadioButton(caption, this);
  option->setObjectName(QString::fromLatin1(name));
  return option;
}

QLineEdit* SearchDialog::makeDateBox(const char* name, const QString& label, int digits) {
  auto* const box = new QLineEdit(this);
  box->setObjectName(QString::fromLatin1(name));
  box->setAccessibleName(label);
  box->setToolTip(label);
  // The minimum width of a box is added for its frame.
  box->setFixedWidth(box->fontMetrics().horizontalAdvance(QString(digits, QLatin1Char('0'))) +
                     box->minimumSizeHint().width());
  return box;
}

QLayout* SearchDialog::rowOfDateBoxes() {
  Text2_ = makeDateBox("Text2", QStringLiteral("Month"), 2);
  Text1_ = makeDateBox("Text1", QStringLiteral("Day"), 2);
  Text4_ = makeDateBox("Text4", QStringLiteral("Year"), 4);
  QLabel* const Label6 = makeLabel("Label6", QStringLiteral("Month"), this);
  QLabel* const Label7 = makeLabel("Label7", QStringLiteral("Year"), this);
  Label6->setBuddy(Text2_);
  Label7->setBuddy(Text4_);

  auto* const row = new QHBoxLayout;
  const auto addWithArrows = [row](QLineEdit* box, UpDown* arrows) {
    auto* const pair = new QHBoxLayout;
    pair->setSpacing(0);
    pair->addWidget(box);
    pair->addWidget(arrows);
    row->addLayout(pair);
  };
  row->addWidget(Label6);
  addWithArrows(Text2_, new UpDown("UpDown2", QStringLiteral("month"), *Text2_, kMonths));
  addWithArrows(Text1_, new UpDown("UpDown1", QStringLiteral("day"), *Text1_, kDays));
  row->addSpacing(kGap);
  row->addWidget(Label7);
  addWithArrows(Text4_, new UpDown("UpDown3", QStringLiteral("year"), *Text4_, kYears));
  row->addStretch();
  row->setContentsMargins(0, 0, 0, 0);
  return row;
}

void SearchDialog::Form_Load() {
  centreOver(*this, parts_.mainWindow);
  Option1_->setChecked(true);
  const LocalDateTime today = parts_.clock.now();
  Text2_->setText(QString::number(today.month));
  Text1_->setText(QString::number(today.day));
  Text4_->setText(QString::number(yearOfTwoDigits(today.year % 100)));
}

// The dialog is not used after a message box, because the program may end while one is
// open and destroy the dialog.
void SearchDialog::OKButton_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::ProcessSearch, [this] {
    const SearchCriteria criteria{
        .userSearchType = userSearchType(),
        .searchText = Text3_->text().normalized(QString::NormalizationForm_C).toStdString(),
        .searchDate = searchDate()};
    if (criteria.userSearchType != UserSearchType::Url) focusWrongDatePart(criteria.searchDate);
    const std::vector<std::string> found = matchesOf(criteria);
    if (found.empty()) {
      if (Text3_->isEnabled()) focusAndSelect(*Text3_);  // for another try
      parts_.messageBox.show("No matches found.", MessageBoxStyle::Information);
      return;
    }
    parts_.showResults(criteria, found);
  });
}

// The message about a date that cannot be read names no box, so the box to correct gets
// the focus.
void SearchDialog::focusWrongDatePart(const std::string& date) {
  try {
    static_cast<void>(readCalendarDate(date));
  } catch (const Failure&) {
    const int month = Text2_->text().toInt();
    bool hasYear = false;
    Text4_->text().mid(2, 2).toInt(&hasYear);
    QLineEdit* const wrong = month < kMonths.lowest || month > kMonths.highest ? Text2_
                             : hasYear                                         ? Text1_
                                                                               : Text4_;
    focusAndSelect(*wrong);
  }
}

std::vector<std::string> SearchDialog::matchesOf(const SearchCriteria& criteria) {
  const Hourglass hourglass(*this);
  std::vector<std::string> found = parts_.search(criteria);
  parts_.unloadResults();
  return found;
}

void SearchDialog::CancelButton_Click() { reject(); }

UserSearchType SearchDialog::userSearchType() const {
  if (Option2_->isChecked()) return UserSearchType::Date;
  return Option3_->isChecked() ? UserSearchType::Both : UserSearchType::Url;
}

// A year of fewer than four characters yields fewer than two digits, or none.
std::string SearchDialog::searchDate() const {
  const QString twoDigits = Text4_->text().mid(2, 2);
  return (Text2_->text() + QLatin1Char('/') + Text1_->text() + QLatin1Char('/') + twoDigits)
      .toStdString();
}

}  // namespace quorrix
