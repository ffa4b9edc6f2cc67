#include "shell/qt_message_box.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMessageBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

using UserAction = std::function<void(QMessageBox&)>;

void clickDefaultButton(QMessageBox& box) { box.defaultButton()->click(); }

QLabel& textLabel(const QMessageBox& box) {
  return *box.findChild<QLabel*>(QStringLiteral("MessageText"));
}

// Shows a message box and, as soon as it is open, does what the user would do with it.
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

class StyleWithIconsOnButtons final : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 1;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }
};

// The buttons of the dialogs have no icons either.
TEST(QtMessageBox, HasButtonsWithoutIconsOnEveryDesktop) {
  const QString before = QApplication::style()->name();
  QApplication::setStyle(new StyleWithIconsOnButtons(QStyleFactory::create(before)));
  QMessageBox ordinary(QMessageBox::NoIcon, QString(), QString(), QMessageBox::Ok);
  EXPECT_FALSE(ordinary.button(QMessageBox::Ok)->icon().isNull());
  inspect(MessageBoxStyle::ConfirmQuestion, [](const QMessageBox& box) {
    for (const QAbstractButton* const button : box.buttons()) {
      EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
    }
  });
  QApplication::setStyle(before);
}

TEST(QtMessageBox, ShowsMarkupLetterByLetter) {
  const QString text = QStringLiteral("<b>Unable</b> to find &amp; <img src=x>");
  showAnd(
      [&text](QMessageBox& box) {
        EXPECT_EQ(textLabel(box).text(), text);
        EXPECT_EQ(textLabel(box).textFormat(), Qt::PlainText);
        clickDefaultButton(box);
      },
      "<b>Unable</b> to find &amp; <img src=x>");
}

// The path of a folder, a single long word.
const std::string kLongQuestion = "Delete archive '/" + std::string(250, 'w') + "'?";

TEST(QtMessageBox, ShowsALongWordWholeAndSaysItUnchanged) {
  showAnd(
      [](QMessageBox& box) {
        const QString text = QString::fromStdString(kLongQuestion);
        const QLabel& label = textLabel(box);
        EXPECT_EQ(label.text(), text);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&textLabel(box))->text(QAccessible::Name),
                  text);
        EXPECT_LE(label.width(), 60 * label.fontMetrics().averageCharWidth());
        EXPECT_GE(label.height(), label.heightForWidth(label.width()));
        EXPECT_GE(label.height(), 3 * label.fontMetrics().height());
        clickDefaultButton(box);
      },
      kLongQuestion);
}

TEST(QtMessageBox, CopiesItsTextUnchangedWithTheKeyForCopying) {
  for (const std::string& text : {kLongQuestion, std::string("<b>caf\u00e9</b> \u0416\nnext")}) {
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    showAnd(
        [](QMessageBox& box) {
          ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
          QTest::keyClick(box.windowHandle(), Qt::Key_C, Qt::ControlModifier);
          EXPECT_TRUE(box.isVisible());
          clickDefaultButton(box);
        },
        text);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString(text));
  }
}

TEST(QtMessageBox, ShowsItsTextOnceInAnotherStyleToo) {
  const auto visibleTexts = [](const QMessageBox& box) {
    QStringList texts;
    for (const QLabel* const label : box.findChildren<QLabel*>()) {
      if (label->isVisible() && !label->text().isEmpty()) texts << label->text();
    }
    return texts;
  };
  for (const auto style : {MessageBoxStyle::Critical, MessageBoxStyle::SystemModal}) {
    showAnd(
        [&](QMessageBox& box) {
          EXPECT_EQ(visibleTexts(box), QStringList(QStringLiteral("Text.")));
          const std::unique_ptr<QStyle> another(QStyleFactory::create(QStringLiteral("windows")));
          box.setStyle(another.get());
          EXPECT_EQ(visibleTexts(box), QStringList(QStringLiteral("Text.")));
          EXPECT_TRUE(box.rect().contains(textLabel(box).geometry()));
          box.setStyle(nullptr);
          clickDefaultButton(box);
        },
        "Text.", style);
  }
}

TEST(QtMessageBox, HasNoIconAndOneButtonForAnUnknownStyle) {
  inspect(MessageBoxStyle{0}, [](const QMessageBox& box) {
    EXPECT_EQ(box.icon(), QMessageBox::NoIcon);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
  });
}

TEST(QtMessageBox, ShowsEveryCharacter) {
  showAnd(
      [](QMessageBox& box) {
        EXPECT_EQ(box.text(), QStringLiteral("caf\u00e9 \u0416"));
        clickDefaultButton(box);
      },
      "caf\u00e9 \u0416");
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
