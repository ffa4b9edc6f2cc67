#include "main_window/about_box.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QTest>
#include <utility>

#include "shell/resources.h"
#include "support/code_pages.h"
#include "support/qt_printers.h"

static void takeResourcesAway() { Q_CLEANUP_RESOURCE(quorrix); }

namespace quorrix {
namespace {

class AboutBoxTest : public testing::Test {
 protected:
  void SetUp() override {
    owner_.setGeometry(100, 100, 720, 540);
    owner_.show();
  }

  QLabel* label(const char* name) { return box_.findChild<QLabel*>(QString::fromLatin1(name)); }
  QPushButton* button() { return box_.findChild<QPushButton*>(); }

  QWidget owner_;
  AboutBox box_{owner_, test::westernCodePage()};
};

TEST(VersionText, HasThreePlainNumbers) {
  EXPECT_EQ(versionText({.major = 1, .minor = 0, .revision = 3}), QStringLiteral("Version 1.0.3"));
  EXPECT_EQ(versionText({.major = 12, .minor = 1000, .revision = 0}),
            QStringLiteral("Version 12.1000.0"));
}

TEST(CodePageText, NamesNumberAndScript) {
  for (const auto& [number, text] :
       {std::pair{874U, "Stores text in code page 874 (Thai)."},
        std::pair{1250U, "Stores text in code page 1250 (Central European)."},
        std::pair{1251U, "Stores text in code page 1251 (Cyrillic)."},
        std::pair{1252U, "Stores text in code page 1252 (Western)."},
        std::pair{1253U, "Stores text in code page 1253 (Greek)."},
        std::pair{1254U, "Stores text in code page 1254 (Turkish)."},
        std::pair{1255U, "Stores text in code page 1255 (Hebrew)."},
        std::pair{1256U, "Stores text in code page 1256 (Arabic)."},
        std::pair{1257U, "Stores text in code page 1257 (Baltic)."},
        std::pair{1258U, "Stores text in code page 1258 (Vietnamese)."}}) {
    EXPECT_EQ(codePageText(CodePage(number)), QString::fromLatin1(text));
  }
}

TEST_F(AboutBoxTest, TellsNameAndVersion) {
  box_.Form_Load();
  EXPECT_EQ(box_.windowTitle(), QStringLiteral("About Quorrix"));
  EXPECT_EQ(label("lblTitle")->text(), QStringLiteral("Quorrix"));
  EXPECT_EQ(label("lblVersion")->text(), QStringLiteral("Version 1.0.0"));
}

TEST(LibrariesText, NamesQtWithItsLicence) {
  EXPECT_EQ(librariesText(QStringLiteral("6.4.2")),
            QStringLiteral("Made with Qt 6.4.2, which is used under the GNU Lesser General\n"
                           "Public License, version 3. The manual names what else is\n"
                           "inside, and where the licences are."));
}

TEST_F(AboutBoxTest, NamesTheQtThatItRunsWith) {
  box_.Form_Load();
  const QString begin = QStringLiteral("Made with Qt ") + QLatin1String(qVersion()) +
                        QStringLiteral(", which is used under");
  EXPECT_EQ(label("lblLibraries")->text().left(begin.size()), begin);
}

TEST_F(AboutBoxTest, ShowsTheIconOfTheProgram) {
  box_.Form_Load();
  const QImage shown = label("picIcon")->pixmap(Qt::ReturnByValue).toImage();
  EXPECT_EQ(shown.size(), QSize(64, 64));
  const QPixmap expected(QStringLiteral(":/icons/quorrix-64.png"));
  EXPECT_EQ(shown, expected.toImage());
}

TEST_F(AboutBoxTest, FailsToLoadWithoutTheIcon) {
  takeResourcesAway();
  EXPECT_ANY_THROW(box_.Form_Load());
  registerResources();
  EXPECT_NO_THROW(box_.Form_Load());
}

TEST_F(AboutBoxTest, IsUnloadedByItsButton) {
  box_.Form_Load();
  box_.show();
  ASSERT_EQ(box_.findChildren<QPushButton*>().size(), 1);
  QTest::mouseClick(button(), Qt::LeftButton);
  EXPECT_FALSE(box_.isVisible());
}

TEST_F(AboutBoxTest, GoesWithReturnAndWithEscape) {
  box_.Form_Load();
  for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
    box_.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&box_));
    QTest::keyClick(&box_, key);
    EXPECT_FALSE(box_.isVisible());
  }
}

TEST_F(AboutBoxTest, IsReadOutByItsTexts) {
  for (QWidget* const control :
       {static_cast<QWidget*>(label("picIcon")), static_cast<QWidget*>(button())}) {
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).isEmpty())
        << control->objectName().toStdString();
  }
}

TEST_F(AboutBoxTest, CentresItselfOverTheMainWindow) {
  box_.Form_Load();
  const QPoint distance = box_.frameGeometry().center() - owner_.frameGeometry().center();
  EXPECT_LE(distance.manhattanLength(), 8);  // the frames are not known yet
}

TEST(ApplicationIcon, HasEveryUsualSize) {
  const QList<QSize> expected{{16, 16}, {22, 22}, {24, 24},   {32, 32},
                              {48, 48}, {64, 64}, {128, 128}, {256, 256}};
  EXPECT_EQ(applicationIcon().availableSizes(), expected);
}

}  // namespace
}  // namespace quorrix
