#include "archives/folder_list.h"

#include <QSignalSpy>

#include "archives/archive_stage.h"
#include "support/failure_number.h"

namespace quorrix {
namespace {

using test::failureNumberOf;
using test::Texts;

class FolderListTest : public test::ArchiveStage {
 protected:
  FolderListTest() {
    folders_.onChange([this] {
      changes_.push_back(test::withSlashes(folders_.path().string()));
      if (changeFailure_ != 0) throw Failure(changeFailure_);
    });
    folders_.resize(300, 400);
    folders_.show();
  }

  int failureOfOpening(const Path& path) {
    return failureNumberOf([&] {
      folders_.setPath(path);
      return 0;
    });
  }

  Texts rows() const { return rowsOf(folders_); }

  std::string selected() const {
    const auto items = folders_.selectedItems();
    return items.size() == 1 ? items.first()->text().toStdString() : "";
  }

  FolderList folders_{files_, "/opt/quorrix/Archives", nullptr};
  QSignalSpy refusals_{&folders_, &FolderList::openFailed};
  Texts changes_;
  int changeFailure_ = 0;
};

TEST_F(FolderListTest, BeginsInTheRoot) {
  EXPECT_EQ(folders_.path(), "/");
  EXPECT_EQ(rows(), (Texts{"/", "media", "opt"}));
  EXPECT_EQ(changes_, Texts{});
}

TEST_F(FolderListTest, ShowsThePathAndWhatTheFolderHolds) {
  folders_.setPath("/opt/quorrix");
  EXPECT_EQ(folders_.path(), "/opt/quorrix");
  EXPECT_EQ(rows(), (Texts{"/", "opt", "quorrix", "Archives", "Data"}));
  EXPECT_EQ(selected(), "quorrix");
  EXPECT_EQ(changes_, Texts{"/opt/quorrix"});
}

TEST_F(FolderListTest, IndentsEachFolderBelowTheOneThatHoldsIt) {
  folders_.setPath("/opt/quorrix");
  std::vector<int> steps;
  for (int row = 0; row < folders_.count(); ++row) {
    steps.push_back(folders_.item(row)->data(Qt::UserRole).toInt());
  }
  EXPECT_EQ(steps, (std::vector<int>{0, 1, 2, 3, 3}));
  EXPECT_GT(folders_.sizeHintForIndex(folders_.model()->index(4, 0)).width(),
            folders_.fontMetrics().horizontalAdvance(QStringLiteral("Data")) + 30);
}

TEST_F(FolderListTest, ShowsWhichFoldersAreOpen) {
  folders_.setPath("/opt/quorrix");
  const auto picture = [](const QIcon& icon) { return icon.pixmap(16).toImage(); };
  const QImage open = picture(folders_.style()->standardIcon(QStyle::SP_DirOpenIcon));
  const QImage closed = picture(folders_.style()->standardIcon(QStyle::SP_DirClosedIcon));
  ASSERT_NE(open, closed);
  for (const int row : {0, 1, 2}) EXPECT_EQ(picture(folders_.item(row)->icon()), open) << row;
  for (const int row : {3, 4}) EXPECT_EQ(picture(folders_.item(row)->icon()), closed) << row;
}

class FolderListHighlight : public FolderListTest {
 protected:
  static constexpr int kIndentOfTwo = 20;

  FolderListHighlight() {
    QPalette palette = folders_.palette();
    palette.setColor(QPalette::Base, Qt::white);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
      palette.setColor(group, QPalette::Highlight, Qt::magenta);
    }
    folders_.setPalette(palette);
    folders_.setPath("/opt/quorrix");
  }

  QImage selectedRow() {
    return folders_.viewport()->grab(folders_.visualItemRect(folders_.currentItem())).toImage();
  }

  static double shareOfHighlight(const QImage& picture, int left, int right) {
    int count = 0;
    for (int x = left; x < right; ++x) {
      for (int y = 0; y < picture.height(); ++y) count += picture.pixelColor(x, y) == Qt::magenta;
    }
    return static_cast<double>(count) / ((right - left) * picture.height());
  }

  static bool isPainted(const QImage& picture, int left, int right) {
    for (int x = left; x < right; ++x) {
      for (int y = 0; y < picture.height(); ++y) {
        if (picture.pixelColor(x, y) != Qt::white) return true;
      }
    }
    return false;
  }

  int iconEnd() const {
    return kIndentOfTwo + folders_.style()->pixelMetric(QStyle::PM_ListViewIconSize);
  }
};

// An icon could not be seen on a highlight of the same colour.
TEST_F(FolderListHighlight, CoversTheNameAndNotTheIcon) {
  const QImage row = selectedRow();
  EXPECT_EQ(shareOfHighlight(row, 0, kIndentOfTwo + 16), 0);
  EXPECT_TRUE(isPainted(row, kIndentOfTwo, kIndentOfTwo + 16));
  EXPECT_GT(shareOfHighlight(row, iconEnd() + 5, row.width()), 0.5);
}

TEST_F(FolderListHighlight, LeavesTheIconFreeAtTheRightInALayoutFromRightToLeft) {
  folders_.setLayoutDirection(Qt::RightToLeft);
  const QImage row = selectedRow();
  EXPECT_EQ(shareOfHighlight(row, row.width() - kIndentOfTwo - 16, row.width()), 0);
  EXPECT_TRUE(isPainted(row, row.width() - kIndentOfTwo - 16, row.width() - kIndentOfTwo));
  EXPECT_GT(shareOfHighlight(row, 0, row.width() - iconEnd() - 5), 0.5);
}

TEST_F(FolderListTest, TakesAPathWithASeparatorAtItsEnd) {
  folders_.setPath("/opt/quorrix/");
  EXPECT_EQ(test::withSlashes(folders_.path().string()), "/opt/quorrix");
  folders_.setPath("/");
  EXPECT_EQ(test::withSlashes(folders_.path().string()), "/");
}

TEST_F(FolderListTest, StaysWhereItWasWhenAFolderCannotBeOpened) {
  folders_.setPath("/opt/quorrix");
  disk_.failListing("/opt/quorrix/Data", 75);
  EXPECT_EQ(failureOfOpening("/opt/quorrix/Data"), 75);
  EXPECT_EQ(failureOfOpening("/media/empty"), 71);
  EXPECT_EQ(failureOfOpening("/missing"), 76);
  EXPECT_EQ(folders_.path(), "/opt/quorrix");
  EXPECT_EQ(rows(), (Texts{"/", "opt", "quorrix", "Archives", "Data"}));
  EXPECT_EQ(changes_, Texts{"/opt/quorrix"});
}

TEST_F(FolderListTest, HasOpenedAFolderWhenThoseWhoAreToldFail) {
  folders_.setPath("/opt/quorrix");
  changeFailure_ = 57;
  EXPECT_EQ(failureOfOpening("/media"), 57);
  EXPECT_EQ(folders_.path(), "/media");
  EXPECT_EQ(rows(), (Texts{"/", "media", "empty", "stick"}));
}

TEST_F(FolderListTest, GoesBackWhenThoseWhoAreToldFailAndItIsToStay) {
  folders_.setPath("/opt/quorrix");
  changeFailure_ = 57;
  EXPECT_EQ(failureNumberOf([&] {
              folders_.setPathOrStay("/media");
              return 0;
            }),
            57);
  EXPECT_EQ(folders_.path(), "/opt/quorrix");
  EXPECT_EQ(rows(), (Texts{"/", "opt", "quorrix", "Archives", "Data"}));
}

TEST_F(FolderListTest, TellsOfAnotherFolderOnlyButReadsTheSameAnew) {
  folders_.setPath("/opt");
  disk_.givenAFolder("/opt/new");
  folders_.setPath("/opt");
  EXPECT_EQ(changes_, Texts{"/opt"});
  EXPECT_EQ(rows(), (Texts{"/", "opt", "new", "quorrix"}));
}

TEST_F(FolderListTest, SelectsByOneClick) {
  folders_.setPath("/opt/quorrix");
  QSignalSpy clicks(&folders_, &QListWidget::itemClicked);
  clickOn(folders_, "Data");
  EXPECT_EQ(selected(), "Data");
  EXPECT_EQ(folders_.path(), "/opt/quorrix");
  EXPECT_EQ(clicks.count(), 1);
  EXPECT_EQ(changes_, Texts{"/opt/quorrix"});
}

TEST_F(FolderListTest, OpensByTwoClicks) {
  folders_.setPath("/opt/quorrix");
  doubleClickOn(folders_, "Archives");
  EXPECT_EQ(folders_.path(), "/opt/quorrix/Archives");
  EXPECT_EQ(rows(), (Texts{"/", "opt", "quorrix", "Archives", "June", "May"}));
  doubleClickOn(folders_, "opt");
  EXPECT_EQ(folders_.path(), "/opt");
  doubleClickOn(folders_, "/");
  EXPECT_EQ(folders_.path(), "/");
  EXPECT_EQ(changes_, (Texts{"/opt/quorrix", "/opt/quorrix/Archives", "/opt", "/"}));
}

TEST_F(FolderListTest, OpensByEnter) {
  QTest::keyClick(&folders_, Qt::Key_Down);
  QTest::keyClick(&folders_, Qt::Key_Down);
  EXPECT_EQ(folders_.path(), "/");
  QTest::keyClick(&folders_, Qt::Key_Return);
  EXPECT_EQ(folders_.path(), "/opt");
  QTest::keyClick(&folders_, Qt::Key_Up);
  QTest::keyClick(&folders_, Qt::Key_Enter);
  EXPECT_EQ(folders_.path(), "/");
}

TEST_F(FolderListTest, TellsWhenTheUserCannotOpenAFolder) {
  folders_.setPath("/media");
  doubleClickOn(folders_, "empty");
  ASSERT_EQ(refusals_.count(), 1);
  EXPECT_EQ(refusals_[0][0].toInt(), 71);
  EXPECT_EQ(folders_.path(), "/media");
  changeFailure_ = 7;
  doubleClickOn(folders_, "stick");
  ASSERT_EQ(refusals_.count(), 2);
  EXPECT_EQ(refusals_[1][0].toInt(), 7);
  EXPECT_EQ(folders_.path(), "/media");
}

TEST_F(FolderListTest, ShowsEmptyWhereEvenTheRootCannotBeRead) {
  files_.failAlways(57);
  FolderList folders(files_, "/opt", nullptr);
  EXPECT_EQ(folders.path(), "/");
  EXPECT_EQ(folders.count(), 0);
  QTest::keyClick(&folders, Qt::Key_Return);
  EXPECT_EQ(folders.path(), "/");
}

TEST_F(FolderListTest, ShowsWhereTheNameOfADeepFolderBegins) {
  Path deep = "/deep";
  for (int depth = 0; depth < 40; ++depth) deep /= "down";
  disk_.givenAFolder(deep / "bottom");
  folders_.setPath(deep);
  const auto startOf = [this](int row) {
    const QRect place = folders_.visualItemRect(folders_.item(row));
    return place.left() + 10 * folders_.item(row)->data(Qt::UserRole).toInt();
  };
  EXPECT_GE(startOf(folders_.currentRow()), 0);
  EXPECT_LE(startOf(folders_.currentRow()) +
                folders_.fontMetrics().horizontalAdvance(QStringLiteral("down")),
            folders_.viewport()->width());
  folders_.setCurrentRow(0);
  EXPECT_EQ(startOf(0), 0);
}

TEST_F(FolderListTest, BeginsATypedNameAnewInEachFolder) {
  disk_.givenAFolder("/opt/tulips");
  disk_.givenAFolder("/opt/others");
  folders_.setPath("/");
  QTest::keyClick(&folders_, 'o');
  EXPECT_EQ(selected(), "opt");
  QTest::keyClick(&folders_, Qt::Key_Return);
  QTest::keyClick(&folders_, 't');
  EXPECT_EQ(selected(), "tulips");
}

TEST_F(FolderListTest, ShowsNamesAsTheyAreAndOpensTheirBytes) {
  disk_.givenAFolder("/odd/<b>&A [*]/below");
  disk_.givenAFolder("/odd/caf\xE9/below");
  disk_.givenAFolder(Path(u8"/odd/Ж\n書/below"));
  folders_.setPath("/odd");
  EXPECT_EQ(rows(), (Texts{"/", "odd", "<b>&A [*]", "caf\u00e9", "\u0416\u240a\u66f8"}));
  doubleClickOn(folders_, "caf\u00e9");
  EXPECT_EQ(test::bytesWithSlashes(folders_.path()), "/odd/caf\xE9");
  EXPECT_EQ(rows(), (Texts{"/", "odd", "caf\u00e9", "below"}));
}

}  // namespace
}  // namespace quorrix
