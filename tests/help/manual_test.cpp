// The manual as built, in the window that shows it.
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include "main_window/help_file.h"
#include "main_window/help_window.h"
#include "platform/real_file_system.h"

namespace quorrix {
namespace {

class ManualTest : public testing::Test {
 protected:
  void SetUp() override {
    page_ = readHelpFile(files_, QUORRIX_MANUAL);
    window_.setAttribute(Qt::WA_DeleteOnClose, false);
    window_.showPage(page_);
    window_.resize(980, 700);  // the screen of these tests is smaller than the window's own size
    window_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window_));
  }

  QTextBrowser& browser() { return *window_.findChild<QTextBrowser*>(); }
  QTreeWidget& contents() { return *window_.findChild<QTreeWidget*>(); }

  QList<QTreeWidgetItem*> entries() {
    QList<QTreeWidgetItem*> all;
    for (QTreeWidgetItemIterator it(&contents()); *it != nullptr; ++it) all << *it;
    return all;
  }

  // The texts as they are in the file. No heading contains an entity.
  QStringList headingsOfThePage() {
    static const QRegularExpression heading(
        QStringLiteral("<h[1-6] id=\"[^\"]+\">([^<]+)</h[1-6]>"));
    QStringList texts;
    auto matches = heading.globalMatch(QString::fromStdString(page_));
    while (matches.hasNext()) texts << matches.next().captured(1);
    return texts;
  }

  RealFileSystem files_;
  std::string page_;
  HelpWindow window_{[](const QUrl&) {}, [](const auto& work) { work(); }};
};

TEST_F(ManualTest, HasEveryHeadingInItsContents) {
  QStringList listed;
  for (const QTreeWidgetItem* const entry : entries()) listed << entry->text(0);
  EXPECT_GT(listed.size(), 30);
  EXPECT_EQ(listed, headingsOfThePage());
}

TEST_F(ManualTest, ShowsEachHeadingThatIsChosen) {
  const QList<QTreeWidgetItem*> all = entries();
  qsizetype number = 0;
  for (QTextBlock block = browser().document()->begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() == 0) continue;
    ASSERT_LT(number, all.size());
    EXPECT_EQ(all[number]->text(0), block.text());
    emit contents().itemActivated(all[number], 0);
    const QRect shown = browser().cursorRect(QTextCursor(block));
    EXPECT_TRUE(browser().viewport()->rect().contains(shown.center())) << number;
    ++number;
  }
  EXPECT_EQ(number, all.size());
}

TEST_F(ManualTest, ShowsEveryPicture) {
  int pictures = 0;
  for (QTextBlock block = browser().document()->begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextImageFormat format = part.fragment().charFormat().toImageFormat();
      if (!format.isValid()) continue;
      ++pictures;
      const QVariant picture =
          browser().document()->resource(QTextDocument::ImageResource, QUrl(format.name()));
      const QImage image = picture.canConvert<QImage>() && !picture.value<QImage>().isNull()
                               ? picture.value<QImage>()
                               : QImage::fromData(picture.toByteArray());
      EXPECT_FALSE(image.isNull()) << pictures;
      EXPECT_NEAR(format.width() / format.height(), double(image.width()) / image.height(), 0.02);
    }
  }
  EXPECT_GE(pictures, 7);
}

TEST_F(ManualTest, FitsTheWidthOfItsWindow) {
  EXPECT_EQ(browser().horizontalScrollBar()->maximum(), 0);
}

}  // namespace
}  // namespace quorrix
