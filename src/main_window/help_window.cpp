#include "main_window/help_window.h"

#include <QAccessible>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "main_window/help_browser.h"
#include "shell/controls.h"
#include "shell/window_frame.h"

namespace quorrix {
namespace {

constexpr QSize kFirstSize{980, 700};  // pixels
constexpr int kContentsWidth = 290;
constexpr int kLongestSearch = 100;  // characters
constexpr int kAnchorRole = Qt::UserRole;

constexpr QTextDocument::FindFlags kForward{};
constexpr QTextDocument::FindFlags kBackward = QTextDocument::FindBackward;

QPushButton* makeButtonWithHint(const char* name, const QString& caption, const QString& hint,
                                QWidget* parent) {
  QPushButton* const button = makeButton(name, caption, parent);
  button->setToolTip(hint);
  return button;
}

}  // namespace

HelpWindow::HelpWindow(std::function<void(const QUrl&)> openAddress, SlotRunner run)
    : run_(std::move(run)),
      browser_(named(new HelpBrowser(std::move(openAddress), this), "Browser",
                     QStringLiteral("Manual"))) {
  setObjectName(QStringLiteral("HelpWindow"));
  setWindowTitle(QStringLiteral("Quorrix Help"));
  setAttribute(Qt::WA_DeleteOnClose);
  setLayoutDirection(Qt::LeftToRight);  // the manual is in English
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(rowOfControls());

  auto* const parts = new QSplitter(this);
  contents_ = named(new QTreeWidget(parts), "Contents", QStringLiteral("Contents"));
  contents_->setHeaderHidden(true);
  contents_->header()->setStretchLastSection(false);
  contents_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  for (const auto chosen : {&QTreeWidget::itemClicked, &QTreeWidget::itemActivated}) {
    connect(contents_, chosen, this,
            [this](const QTreeWidgetItem* entry) { run_([this, entry] { goToEntry(entry); }); });
  }
  parts->addWidget(browser_);
  parts->setChildrenCollapsible(false);
  parts->setStretchFactor(1, 1);
  layout->addWidget(parts, 1);

  findResult_ = makeLabel("FindResult", {}, this);
  findResult_->setWordWrap(true);
  // A long search text is cut off, so that it does not widen the window.
  findResult_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  layout->addWidget(findResult_);

  addShortcuts();
  resize(kFirstSize.boundedTo(roomInsideAFrame(*screen())));
  const int contentsWidth = std::min(kContentsWidth, width() / 3);
  parts->setSizes({contentsWidth, width() - contentsWidth});
  browser_->setFocus();
}

QLayout* HelpWindow::rowOfControls() {
  auto* const back = makeButtonWithHint("BackButton", QStringLiteral("&Back"),
                                        QStringLiteral("Where you were before (Alt+Left)"), this);
  auto* const forward =
      makeButtonWithHint("ForwardButton", QStringLiteral("For&ward"),
                         QStringLiteral("Where you went back from (Alt+Right)"), this);
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(back, &QPushButton::clicked, browser_, &QTextBrowser::backward);
  connect(forward, &QPushButton::clicked, browser_, &QTextBrowser::forward);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);

  findBox_ = named(new QLineEdit(this), "FindBox", QStringLiteral("Find in the manual"));
  findBox_->setMaxLength(kLongestSearch);
  findBox_->setClearButtonEnabled(true);
  auto* const label = new QLabel(QStringLiteral("&Find"), this);
  label->setBuddy(findBox_);
  auto* const next = makeButtonWithHint("FindNextButton", QStringLiteral("&Next"),
                                        QStringLiteral("Find the next place (F3)"), this);
  auto* const previous =
      makeButtonWithHint("FindPreviousButton", QStringLiteral("&Previous"),
                         QStringLiteral("Find the place before (Shift+F3)"), this);
  const auto onSignal = [this](auto* sender, auto signal, auto work) {
    connect(sender, signal, this, [this, work] { run_(work); });
  };
  onSignal(findBox_, &QLineEdit::textChanged, [this] { tell({}); });
  onSignal(findBox_, &QLineEdit::returnPressed, [this] { find(kForward); });
  onSignal(next, &QPushButton::clicked, [this] { find(kForward); });
  onSignal(previous, &QPushButton::clicked, [this] { find(kBackward); });

  auto* const row = new QHBoxLayout;
  row->addWidget(back);
  row->addWidget(forward);
  row->addStretch(1);
  row->addWidget(label);
  row->addWidget(findBox_, 1);
  row->addWidget(next);
  row->addWidget(previous);
  return row;
}

void HelpWindow::addShortcuts() {
  const auto add = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this,
            [this, action] { run_(action); });
  };
  add(QKeySequence(Qt::CTRL | Qt::Key_F), [this] { startFind(); });
  add(QKeySequence(Qt::Key_F3), [this] { find(kForward); });
  add(QKeySequence(Qt::SHIFT | Qt::Key_F3), [this] { find(kBackward); });
  add(QKeySequence(Qt::ALT | Qt::Key_Left), [this] { browser_->backward(); });
  add(QKeySequence(Qt::ALT | Qt::Key_Right), [this] { browser_->forward(); });
  add(QKeySequence(Qt::Key_Escape), [this] { close(); });
  add(QKeySequence(Qt::CTRL | Qt::Key_W), [this] { close(); });
}

void HelpWindow::showPage(const std::string& page) {
  if (browser_->showPage(page)) fillContents();
}

// Each heading becomes a child of the last preceding heading of a higher rank.
void HelpWindow::fillContents() {
  contents_->clear();
  std::vector<std::pair<int, QTreeWidgetItem*>> above;
  for (const HelpBrowser::Heading& heading : browser_->headings()) {
    while (!above.empty() && above.back().first >= heading.level) above.pop_back();
    auto* const entry =
        above.empty() ? new QTreeWidgetItem(contents_) : new QTreeWidgetItem(above.back().second);
    entry->setText(0, heading.text);
    entry->setData(0, kAnchorRole, heading.anchor);
    above.emplace_back(heading.level, entry);
  }
  contents_->expandToDepth(0);
  contents_->setCurrentItem(contents_->topLevelItem(0));
}

void HelpWindow::goToEntry(const QTreeWidgetItem* entry) {
  browser_->goTo(entry->data(0, kAnchorRole).toString());
}

void HelpWindow::startFind() {
  findBox_->setFocus(Qt::ShortcutFocusReason);
  findBox_->selectAll();
}

void HelpWindow::find(QTextDocument::FindFlags direction) {
  tell({});
  const QString text = findBox_->text();
  if (text.isEmpty()) return startFind();
  if (browser_->find(text, direction)) return;
  const bool isBackward = direction.testFlag(QTextDocument::FindBackward);
  QTextCursor end(browser_->document());
  if (isBackward) end.movePosition(QTextCursor::End);
  const QTextCursor found = browser_->document()->find(text, end, direction);
  if (found.isNull()) return tell(QStringLiteral("Not found in the manual: %1").arg(text));
  browser_->setTextCursor(found);
  tell(isBackward ? QStringLiteral("Searched on from the end.")
                  : QStringLiteral("Searched on from the beginning."));
}

void HelpWindow::tell(const QString& text) {
  findResult_->setText(text);
  if (text.isEmpty()) return;
  QAccessibleEvent said(findResult_, QAccessible::Alert);
  QAccessible::updateAccessibility(&said);
}

}  // namespace quorrix
