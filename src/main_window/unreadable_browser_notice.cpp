#include "main_window/unreadable_browser_notice.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <algorithm>
#include <iterator>
#include <utility>

#include "main_window/unreadable_browser_text.h"
#include "shell/controls.h"

namespace quorrix {
namespace {

// Screen readers read out a notification without the user moving to it.
QAccessibleInterface* accessibleNotice(const QString& /*className*/, QObject* object) {
  auto* const notice = qobject_cast<UnreadableBrowserNotice*>(object);
  return notice == nullptr ? nullptr : new QAccessibleWidget(notice, QAccessible::Notification);
}

QLabel* makeIcon(QWidget* parent) {
  auto* const icon = new QLabel(parent);
  const QStyle& style = *parent->style();
  const int size = style.pixelMetric(QStyle::PM_SmallIconSize);
  icon->setPixmap(style.standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
  return icon;
}

}  // namespace

UnreadableBrowserNotice::UnreadableBrowserNotice(QWidget* parent, SlotRunner run, Announce announce)
    : QFrame(parent), run_(std::move(run)), announce_(std::move(announce)) {
  QAccessible::installFactory(accessibleNotice);  // installed once, however often this is called
  setObjectName(QStringLiteral("UnreadableBrowserNotice"));
  setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  text_ = makeLabel("", {}, this);
  text_->setWordWrap(true);
  QPushButton* const button = makeButton("DismissButton", QStringLiteral("Dismiss"), this);
  button->setFocusPolicy(Qt::TabFocus);  // a click does not take the keyboard focus
  button->setAutoDefault(true);          // the Enter key presses it, too
  connect(button, &QPushButton::clicked, this, [this] { run_([this] { dismiss(); }); });

  auto* const row = new QHBoxLayout(this);
  row->addWidget(makeIcon(this), 0, Qt::AlignVCenter);
  row->addWidget(text_, 1);
  row->addWidget(button, 0, Qt::AlignVCenter);
  hide();
}

void UnreadableBrowserNotice::showBrowsers(const std::vector<UnreadableBrowser>& browsers) {
  std::vector<UnreadableBrowser> shown;
  std::ranges::copy_if(browsers, std::back_inserter(shown), [this](const auto& browser) {
    return std::ranges::find(dismissed_, browser) == dismissed_.end();
  });
  if (shown == shown_) return;
  shown_ = std::move(shown);
  showText();
}

void UnreadableBrowserNotice::dismiss() {
  dismissed_.insert(dismissed_.end(), shown_.begin(), shown_.end());
  shown_.clear();
  showText();
}

void UnreadableBrowserNotice::showText() {
  if (shown_.empty()) {
    giveKeyboardBack();
    hide();
    emit changed();
    return;
  }
  text_->setText(unreadableBrowserText(shown_));
  setAccessibleName(text_->text());
  const bool wasVisible = isVisible();
  show();
  emit changed();
  // Some screen readers read out an object when it is shown, others listen for alerts.
  // show() sends the first event only if the notice was hidden.
  if (wasVisible) announce(QAccessible::ObjectShow);
  announce(QAccessible::Alert);
}

// Hiding moves the keyboard focus only in the active window, but the user may be in the
// browser.
void UnreadableBrowserNotice::giveKeyboardBack() {
  if (isAncestorOf(window()->focusWidget())) focusNextChild();
}

void UnreadableBrowserNotice::announce(QAccessible::Event what) {
  QAccessibleEvent event(this, what);
  announce_(event);
}

int UnreadableBrowserNotice::placeAtBottomOf(const QSize& room) {
  if (isHidden()) return 0;
  const int height = std::min(layout()->totalHeightForWidth(room.width()), room.height());
  setGeometry(0, room.height() - height, room.width(), height);
  return height;
}

}  // namespace quorrix
