#include "archives/drive_list.h"

#include <QAbstractItemView>
#include <QSignalSpy>

#include "archives/archive_stage.h"
#include "support/failure_number.h"

namespace quorrix {
namespace {

using test::failureNumberOf;
using test::Texts;

class DriveListTest : public test::ArchiveStage {
 protected:
  Texts rows() const {
    Texts rows;
    for (int row = 0; row < drives_.count(); ++row) {
      rows.push_back(drives_.itemText(row).toStdString());
    }
    return rows;
  }

  std::string shown() const { return drives_.currentText().toStdString(); }

  DriveList drives_{files_, nullptr};
  QSignalSpy changes_{&drives_, &DriveList::changed};
};

TEST_F(DriveListTest, ListsTheVolumes) {
  EXPECT_EQ(rows(), (Texts{"/", "/media/empty", "/media/stick"}));
  EXPECT_EQ(shown(), "/");
  EXPECT_EQ(drives_.drive(), "/");
}

TEST_F(DriveListTest, TellsOfTheUsersChoice) {
  QTest::keyClick(&drives_, Qt::Key_Down);
  EXPECT_EQ(changes_.count(), 1);
  EXPECT_EQ(drives_.drive(), "/media/empty");
  QTest::keyClick(&drives_, Qt::Key_End);
  EXPECT_EQ(changes_.count(), 2);
  EXPECT_EQ(drives_.drive(), "/media/stick");
}

TEST_F(DriveListTest, TellsOfNothingWhenTheSameIsChosen) {
  emit drives_.activated(0);
  EXPECT_EQ(changes_.count(), 0);
}

TEST_F(DriveListTest, IsSetWithoutTellingOfIt) {
  drives_.setDrive("/media/stick");
  EXPECT_EQ(shown(), "/media/stick");
  EXPECT_EQ(drives_.drive(), "/media/stick");
  EXPECT_EQ(changes_.count(), 0);
}

TEST_F(DriveListTest, IsSetToNoVolumeThatIsNotThere) {
  drives_.setDrive("/media/stick");
  EXPECT_EQ(failureNumberOf([&] {
              drives_.setDrive("/media/gone");
              return 0;
            }),
            68);
  EXPECT_EQ(shown(), "/media/stick");
  EXPECT_EQ(drives_.drive(), "/media/stick");
}

TEST_F(DriveListTest, IsSetToAVolumeThatHasJustCome) {
  disk_.givenVolumes({"/", "/media/new"});
  drives_.setDrive("/media/new");
  EXPECT_EQ(rows(), (Texts{"/", "/media/new"}));
  EXPECT_EQ(shown(), "/media/new");
}

TEST_F(DriveListTest, IsSetToTheNearestVolumeOfAPath) {
  drives_.setDriveOf("/media/stick/Old/May");
  EXPECT_EQ(drives_.drive(), "/media/stick");
  EXPECT_EQ(shown(), "/media/stick");
  drives_.setDriveOf("/media/sticky");
  EXPECT_EQ(drives_.drive(), "/");
  drives_.setDriveOf("/media/stick");
  EXPECT_EQ(drives_.drive(), "/media/stick");
  EXPECT_EQ(changes_.count(), 0);
}

TEST_F(DriveListTest, ReadsTheVolumesAnewWhenItOpens) {
  drives_.setDrive("/media/stick");
  disk_.givenVolumes({"/", "/media/new", "/media/stick"});
  drives_.showPopup();
  EXPECT_TRUE(drives_.view()->isVisible());
  EXPECT_EQ(rows(), (Texts{"/", "/media/new", "/media/stick"}));
  EXPECT_EQ(shown(), "/media/stick");
  drives_.hidePopup();
}

TEST_F(DriveListTest, KeepsShowingAVolumeThatHasGone) {
  drives_.setDrive("/media/stick");
  disk_.givenVolumes({"/"});
  drives_.showPopup();
  EXPECT_EQ(rows(), (Texts{"/", "/media/stick"}));
  EXPECT_EQ(shown(), "/media/stick");
  EXPECT_EQ(drives_.drive(), "/media/stick");
  drives_.hidePopup();
}

TEST_F(DriveListTest, KeepsItsRowsWhenTheVolumesCannotBeTold) {
  files_.failAlways(57);
  drives_.showPopup();
  EXPECT_EQ(rows(), (Texts{"/", "/media/empty", "/media/stick"}));
  drives_.hidePopup();
  const DriveList empty(files_, nullptr);
  EXPECT_EQ(empty.count(), 0);
  EXPECT_EQ(empty.drive(), "");
}

TEST_F(DriveListTest, ShowsNamesAsTheyAreAndKeepsTheirBytes) {
  disk_.givenVolumes({"/", "/m/<b>&A [*]", "/m/caf\xE9"});
  const DriveList drives(files_, nullptr);
  EXPECT_EQ(drives.itemText(1), QStringLiteral("/m/<b>&A [*]"));
  EXPECT_EQ(drives.itemText(2), QStringLiteral("/m/caf\u00e9"));
  drives_.setDrive("/m/caf\xE9");
  EXPECT_EQ(test::bytesWithSlashes(drives_.drive()), "/m/caf\xE9");
}

}  // namespace
}  // namespace quorrix
