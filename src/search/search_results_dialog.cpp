#include "search/search_results_dialog.h"

#include <QGridLayout>
#include <QLocale>
#include <QScreen>
#include <QStringBuilder>
#include <QVBoxLayout>

#include "search/literal_label.h"
#include "search/result_list.h"
#include "shell/controls.h"
#include "shell/guarded.h"
#include "shell/plain_text.h"
#include "shell/pointer.h"
#include "shell/window_frame.h"

namespace quorrix {
namespace {

constexpr QSize kFirstSize{420, 235};  // pixels, including the frame

QString countText(std::size_t count) {
  return QLocale().toString(static_cast<qulonglong>(count)) % QStringLiteral(" found");
}

}  // namespace

SearchResultsDialog::SearchResultsDialog(Parts parts)
    : QDialog(&parts.mainWindow), parts_(std::move(parts)) {
  setObjectName(QStringLiteral("SearchResultsDialog"));
  setWindowTitle(QStringLiteral("Search Results"));
  setWindowFlag(Qt::WindowStaysOnTopHint);

  QLabel* const Label1 = makeLabel("Label1",
                                   QStringLiteral("Select a web site address  from the list below "
                                                  "and then click Locate in Display."),
                                   this);
  Label1->setWordWrap(true);
  // In the order in which a screen reader reads them.
  QLabel* const Label3 = makeLabel("Label3", QStringLiteral("Website address contains:"), this);
  Label4_ = new LiteralLabel("Label4", this);
  QLabel* const Label5 = makeLabel("Label5", QStringLiteral("Accessed after:"), this);
  Label6_ = new LiteralLabel("Label6", this);
  List1_ = new ResultList(parts_.codePage, this);
  List1_->setObjectName(QStringLiteral("List1"));
  List1_->describeBy(parts_.describe);
  List1_->copyBy(parts_.withScheme);
  List1_->setAccessibleName(QStringLiteral("Search Results"));
  count_ = makeLabel("Count", QString(), this);
  QPushButton* const OKButton = makeButton("OKButton", QStringLiteral("Locate in Display"), this);
  QPushButton* const NewSearchButton =
      makeButton("NewSearchButton", QStringLiteral("New Search"), this);
  QPushButton* const CancelButton = makeButton("CancelButton", QStringLiteral("Cancel"), this);
  OKButton->setDefault(true);
  connect(OKButton, &QPushButton::clicked, this, &SearchResultsDialog::OKButton_Click);
  connect(List1_, &ResultList::doubleClicked, this, &SearchResultsDialog::OKButton_Click);
  connect(NewSearchButton, &QPushButton::clicked, this,
          &SearchResultsDialog::NewSearchButton_Click);
  connect(CancelButton, &QPushButton::clicked, this, &SearchResultsDialog::CancelButton_Click);

  auto* const criteria = new QGridLayout;
  criteria->addWidget(Label3, 0, 0);
  criteria->addWidget(Label4_, 0, 1);
  criteria->addWidget(Label5, 1, 0);
  criteria->addWidget(Label6_, 1, 1);

  // Beside the list, because below it they would leave it too few rows.
  auto* const buttons = new QVBoxLayout;
  buttons->addWidget(OKButton);
  buttons->addWidget(NewSearchButton);
  buttons->addWidget(CancelButton);
  buttons->addStretch();
  buttons->addWidget(count_);
  auto* const choice = new QHBoxLayout;
  choice->addWidget(List1_, 1);
  choice->addLayout(buttons);

  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(Label1);
  layout->addLayout(criteria);
  layout->addLayout(choice, 1);
  List1_->setFocus();
}

void SearchResultsDialog::Form_Load(const SearchCriteria& criteria,
                                    const std::vector<std::string>& addresses) {
  Label4_->showText(QString::fromStdString(criteria.searchText));
  if (criteria.userSearchType != UserSearchType::Url) {
    Label6_->showText(QString::fromStdString(criteria.searchDate));
  }
  placeInCorner(kFirstSize);
  count_->setText(countText(addresses.size()));
  List1_->showAddresses(addresses);
}

void SearchResultsDialog::placeInCorner(const QSize& size) {
  resize(size - frameAround(*this, parts_.mainWindow));
  move(parts_.mainWindow.screen()->availableGeometry().topLeft());
}

// The dialog is not used after a message box, because the program may end while one is
// open and destroy the dialog.
void SearchResultsDialog::OKButton_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::LocateInDisplay, [this] {
    const int selected = List1_->selectedRow();
    if (selected < 0) {
      parts_.messageBox.show("You must select an item from the list.",
                             MessageBoxStyle::SystemModal);
      return;
    }
    const Hourglass hourglass(*this);
    parts_.locate(parts_.tree.at(List1_->address(selected)));
  });
}

void SearchResultsDialog::NewSearchButton_Click() { parts_.newSearch(); }

void SearchResultsDialog::CancelButton_Click() { reject(); }

}  // namespace quorrix
