#include "shell/qt_message_box.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <string>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

using UserAction = std::function<void(QMessageBox&)>;

void clickDefaultButton(QMessageBox& box) { box.defaultButton()->click(); }

// Shows a message box and, as soon as it is open, does with it what the user would.
MessageBoxButton showAnd(const UserAction& act, std::string_view text,
                         MessageBoxStyle style = MessageBoxStyle::Critical) {
  QTimer::singleShot(0, qApp, [&act] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    act(*box);
    if (!box->isVisible()) return;
    ADD_FAILURE() << "the message box is still open";
    box->reject();
  });
  QtMessageBox messageBox;
  return messageBox.show(text, style);
}

// Looks at an open message box, then closes it.
void inspect(MessageBoxStyle style, const UserAction& look) {
  int looks = 0;
  showAnd(
      [&](QMessageBox& box) {
        look(box);
        ++looks;
        box.reject();
      },
      "Text.", style);
  EXPECT_EQ(looks, 1);
}

TEST(QtMessageBox, IsTitledQuorrix) {
  inspect(MessageBoxStyle::Information,
          [](const QMessageBox& box) { EXPECT_EQ(box.windowTitle(), QStringLiteral("Quorrix")); });
}

struct StyleExpectation {
  MessageBoxStyle style;
  QMessageBox::Icon icon;
  QMessageBox::StandardButtons buttons;
  QMessageBox::StandardButton defaultButton;
  bool staysOnTop;
};

const StyleExpectation kStyleExpectations[] = {
    {MessageBoxStyle{16}, QMessageBox::Critical, QMessageBox::Ok, QMessageBox::Ok, false},
    {MessageBoxStyle{48}, QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok, false},
    {MessageBoxStyle{64}, QMessageBox::Information, QMessageBox::Ok, QMessageBox::Ok, false},
    {MessageBoxStyle{289}, QMessageBox::Question, QMessageBox::Ok | QMessageBox::Cancel,
     QMessageBox::Cancel, false},
    {MessageBoxStyle{305}, QMessageBox::Warning, QMessageBox::Ok | QMessageBox::Cancel,
     QMessageBox::Cancel, false},
    {MessageBoxStyle{4096}, QMessageBox::NoIcon, QMessageBox::Ok, QMessageBox::Ok, true},
};

TEST(QtMessageBox, HasTheIconAndTheButtonsOfItsStyle) {
  for (const StyleExpectation& expected : kStyleExpectations) {
    SCOPED_TRACE(static_cast<int>(expected.style));
    inspect(expected.style, [&expected](QMessageBox& box) {
      EXPECT_EQ(box.icon(), expected.icon);
      EXPECT_EQ(box.standardButtons(), expected.buttons);
      EXPECT_EQ(box.standardButton(box.defaultButton()), expected.defaultButton);
      EXPECT_EQ(box.windowFlags().testFlag(Qt::WindowStaysOnTopHint), expected.staysOnTop);
      EXPECT_TRUE(box.isModal());
    });
  }
}

TEST(QtMessageBox, ShowsMarkupLetterByLetter) {
  const QString text = QStringLiteral("<b>Unable</b> to find &amp; <img src=x>");
  showAnd(
      [&text](QMessageBox& box) {
        const auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->text(), text);
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        clickDefaultButton(box);
      },
      "<b>Unable</b> to find &amp; <img src=x>");
}

TEST(QtMessageBox, ReadsSingleByteText) {
  showAnd(
      [](QMessageBox& box) {
        EXPECT_EQ(box.text(), QStringLiteral("caf\u00e9 \u20ac"));
        clickDefaultButton(box);
      },
      "caf\xe9 \x80");
}

TEST(QtMessageBox, AnswersWithTheButtonThatWasClicked) {
  for (const auto style : {MessageBoxStyle::ConfirmQuestion, MessageBoxStyle::ConfirmWarning}) {
    const auto click = [](QMessageBox::StandardButton button) {
      return [button](QMessageBox& box) { box.button(button)->click(); };
    };
    EXPECT_EQ(showAnd(click(QMessageBox::Ok), "Go on?", style), MessageBoxButton::Ok);
    EXPECT_EQ(showAnd(click(QMessageBox::Cancel), "Go on?", style), MessageBoxButton::Cancel);
  }
}

TEST(QtMessageBox, AnswersOkWhereThereIsNoOtherButton) {
  for (const auto style : {MessageBoxStyle::Critical, MessageBoxStyle::Exclamation,
                           MessageBoxStyle::Information, MessageBoxStyle::SystemModal}) {
    EXPECT_EQ(showAnd(clickDefaultButton, "Text.", style), MessageBoxButton::Ok);
  }
}

TEST(QtMessageBox, TakesEnterForTheDefaultButton) {
  const auto pressEnter = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); };
  EXPECT_EQ(showAnd(pressEnter, "Go on?", MessageBoxStyle::ConfirmQuestion),
            MessageBoxButton::Cancel);
  EXPECT_EQ(showAnd(pressEnter, "Text.", MessageBoxStyle::Critical), MessageBoxButton::Ok);
}

TEST(QtMessageBox, TakesEscapeForCancelWhereThereIsSuchAButton) {
  const auto pressEscape = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); };
  EXPECT_EQ(showAnd(pressEscape, "Go on?", MessageBoxStyle::ConfirmQuestion),
            MessageBoxButton::Cancel);
  EXPECT_EQ(showAnd(pressEscape, "Go on?", MessageBoxStyle::ConfirmWarning),
            MessageBoxButton::Cancel);
  EXPECT_EQ(showAnd(pressEscape, "Text.", MessageBoxStyle::Critical), MessageBoxButton::Ok);
  EXPECT_EQ(showAnd(pressEscape, "Text.", MessageBoxStyle::SystemModal), MessageBoxButton::Ok);
}

TEST(QtMessageBox, TakesClosingForCancelWhereThereIsSuchAButton) {
  const auto close = [](QMessageBox& box) { box.close(); };
  EXPECT_EQ(showAnd(close, "Go on?", MessageBoxStyle::ConfirmWarning), MessageBoxButton::Cancel);
  EXPECT_EQ(showAnd(close, "Text.", MessageBoxStyle::Critical), MessageBoxButton::Ok);
  EXPECT_EQ(showAnd(close, "Text.", MessageBoxStyle::Information), MessageBoxButton::Ok);
}

TEST(QtMessageBox, StandsInFrontOfTheWindowInUse) {
  QWidget window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  inspect(MessageBoxStyle::Critical,
          [&window](const QMessageBox& box) { EXPECT_EQ(box.parentWidget(), &window); });
}

}  // namespace
}  // namespace quorrix
